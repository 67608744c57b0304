#include "script_session.h"

#include <plovix/base/utf8.h>
#include <plovix/component/entry_points.h>
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/tasks/category_column.h>
#include <plovix/standalone/tasks/category_rows.h>
#include <plovix/standalone/tasks/task_access.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

#include "line_error.h"

namespace plovix::script {
namespace {

// Replaces the planned failures while the surface itself calls the host.
struct Uncounted final : CallObserver {
  void HostCalled(std::string_view /*member*/) override {}
};

HostState StateOf(ScriptDialogs& dialogs, const TextTable& texts) {
  HostState state;
  state.dialogs = &dialogs;
  state.texts = texts;
  state.path = "plovix";  // only a name; the script decides whether the marker file exists
  state.marker_file = false;
  state.user_id = "user";
  state.session_id = "session";
  return state;
}

std::shared_ptr<HostControl> MakeControl(std::string_view registered_name) {
  if (registered_name != "VeloDesignerCtrl.VeloActionList") return nullptr;
  return std::make_shared<VeloActionList>();
}

}  // namespace

ScriptSession::ScriptSession(std::ostream& out, std::ostream& err, const ScriptOptions& options)
    : out_(out),
      err_(err),
      storage_(*options.storage),
      runs_(options.runs),
      records_(options.records),
      zone_(options.zone),
      tables_(options.tables),
      user_(options.user),
      open_rows_(options.open_rows),
      state_(StateOf(dialogs_, options.texts)),
      installation_(state_) {
  RegisterPages(registry_);
  if (!options.data) named_data_ = std::make_shared<MemoryDataSource>();
  state_.data = options.data ? options.data : named_data_;
  state_.open_rows = [this](const std::string& query) { return OpenRows(query); };
  if (!user_) return;
  SetUser(state_, *tables_, FindUser(*tables_, user_, state_.texts));
  storage_.SetGuard(GuardFor(*tables_, *user_, state_.texts));
  storage_.SetPerson(*user_);
}

ScriptSession::~ScriptSession() {
  if (IsOpen()) wizard_->Cancel();
  if (!user_) return;
  storage_.SetGuard({});
  storage_.SetPerson({});
}

std::function<bool(const TaskRecord& task)> ScriptSession::MayTreat(TaskRight right) const {
  if (!user_) return [](const TaskRecord& /*task*/) { return true; };
  return [user = UserOf(*tables_, *user_), right](const TaskRecord& task) {
    return user && May(*user, task, right);
  };
}

ManagerScene& ScriptSession::Automation() {
  if (!automation_) {
    automation_ = std::make_unique<ManagerScene>(ManagerScene::Parts{.storage = storage_,
                                                                     .runs = runs_,
                                                                     .records = records_,
                                                                     .state = state_,
                                                                     .tables = user_ ? tables_ : nullptr,
                                                                     .person = user_.value_or(""),
                                                                     .zone = zone_.value_or(Zone::Local())});
  }
  return *automation_;
}

void ScriptSession::Print(const nlohmann::ordered_json& json) {
  out_ << json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n' << std::flush;
  if (!out_) throw LineError("the output cannot be written");
}

TaskRecord ScriptSession::Task() const {
  return wizard_ ? wizard_->Task().Record() : task_;
}

void ScriptSession::SetTask(const TaskRecord& task) {
  if (wizard_) {
    wizard_->Task().Assign(task);
  } else {
    task_ = task;
  }
}

void ScriptSession::BeginTask(const TaskRecord& task) {
  if (!IsOpen()) wizard_.reset();
  SetTask(task);
}

// Tasks that are in no file have only the one column that pages read.
std::unique_ptr<RowCursor> ScriptSession::OpenRows(const std::string& query) {
  if (open_rows_) return CategoryRows(stored_categories_, open_rows_(query));
  std::vector<std::string> columns;
  for (const TaskRecord& task : storage_.List()) columns.push_back(EncodeCategories(task.categories));
  columns.insert(columns.end(), stored_categories_.begin(), stored_categories_.end());
  return CategoryRows(std::move(columns));
}

nlohmann::ordered_json ScriptSession::Store() {
  return StoreJson(wizard_ ? wizard_->Store().values : entries_, numbers_);
}

void ScriptSession::SetEntry(const std::string& key, Value value) {
  if (key == store_key::kAutoTask && !IsOpen())
    throw LineError("the wizard itself puts AutoTask into the store");
  if (wizard_) wizard_->Store().values[key] = value;
  if (key != store_key::kAutoTask) entries_[key] = std::move(value);
}

void ScriptSession::Open(const std::string& identifier) {
  if (IsOpen()) throw LineError("the wizard is open already");
  if (!std::ranges::count(registry_.Identifiers(), identifier)) {
    throw LineError("there is no page " + Quoted(identifier));
  }
  task_ = Task();
  auto entries = entries_;
  if (user_) entries.merge(StartEditing(state_, FindUser(*tables_, user_, state_.texts), task_));
  if (named_user_) state_.user_id = *named_user_;
  wizard_ = std::make_unique<VeloWiz>(WizardParts{state_, registry_, storage_, MakeControl}, task_, entries);
  wizard_->Open(identifier);
}

VeloWiz& ScriptSession::Wizard() {
  if (!IsOpen()) throw LineError("no page is open");
  return *wizard_;
}

void ScriptSession::SceneChanged() {
  if (!IsOpen()) return;
  Uncounted uncounted;
  const ObserveCalls observe(uncounted);
  wizard_->AskNextPage();
}

}  // namespace plovix::script
