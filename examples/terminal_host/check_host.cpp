// The conformance kit on this host: copy it and put objects of your own in the place of these. The exit
// status is 0 when all that the pages count on is there. Works on a file of its own, which the argument
// names.
#include <plovix/conformance/conformance.h>
#include <plovix/standalone/objects/session_object.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/tasks/category_rows.h>
#include <plovix/standalone/text/languages.h>
#include <plovix/standalone/wizard/velo_wiz.h>

#include <iostream>
#include <set>

#include "text_storage.h"

using namespace plovix;

namespace {

// Dialogs that wait for nobody: they answer as the kit has told them.
struct ToldDialogs final : HostDialogs {
  int MessageBox(const std::string&, int, const std::string&) override { return box; }
  ReportAction Report(const FailureReport&) override { return report; }
  std::optional<std::string> EditTag(const std::string&, const std::vector<std::string>&) override {
    return tag;
  }
  std::optional<std::vector<CategoryRecord>> EditCategories(const std::vector<CategoryRecord>&, bool,
                                                            const std::vector<std::string>&) override {
    return categories;
  }
  std::optional<std::string> BuildQuery(const std::string&, const DataObjectRecord&) override {
    return query;
  }
  std::optional<PermissionSet> EditPermissions(const std::optional<PermissionSet>&,
                                               const std::string&) override {
    return permissions;
  }

  int box = message_box::kOk;
  ReportAction report = ReportAction::kLeave;
  std::optional<std::string> tag, query;
  std::optional<std::vector<CategoryRecord>> categories;
  std::optional<PermissionSet> permissions;
};

std::shared_ptr<HostControl> MakeControl(std::string_view /*registered_name*/) {
  return std::make_shared<VeloActionList>();
}

conformance::WizardUnderTest OpenWizard(const WizardParts& parts, const std::string& first_page) {
  const auto wizard = std::make_shared<VeloWiz>(parts, TaskRecord{});
  wizard->Open(first_page);
  const auto press = [wizard](ChangeDirection button) {
    switch (button) {
      case ChangeDirection::kNext:
        return (void)wizard->Next();
      case ChangeDirection::kBack:
        return (void)wizard->Back();
      case ChangeDirection::kFinish:
        return (void)wizard->Finish();
      case ChangeDirection::kCancel:
        return (void)wizard->Cancel();
    }
  };
  const auto enabled = [wizard](ChangeDirection button) {
    const WizardButtons buttons = wizard->Buttons();
    return button == ChangeDirection::kNext     ? buttons.next
           : button == ChangeDirection::kBack   ? buttons.back
           : button == ChangeDirection::kFinish ? buttons.finish
                                                : buttons.cancel;
  };
  return {press, enabled, [wizard](Control& control) { wizard->User().Click(control); }};
}

// The host, with what the kit needs to play its user and its application.
class CheckedHost {
 public:
  explicit CheckedHost(const std::string& path) : storage_(path, state_.texts) {
    state_.dialogs = &dialogs_;
    state_.user_id = "ann";
    state_.session_id = "session";
    state_.texts = LoadLanguage("en");
    auto data = std::make_shared<MemoryDataSource>();
    data->entries = {{{"Customer", "Customers", "Id"}, {}}, {{"Invoice", "Invoices", "Number"}, {}}};
    state_.data = data;
    state_.has_permission = [this](std::string_view key, const DataObjectRecord*) {
      return !denied_.contains(key);
    };
    state_.open_rows = [this](const std::string&) { return CategoryRows(stored_categories_); };
    FillInObjects();
    FillInApplication();
    FillInAnswers();
  }
  ~CheckedHost() { InstallServices({}); }
  CheckedHost(const CheckedHost&) = delete;
  CheckedHost& operator=(const CheckedHost&) = delete;

  [[nodiscard]] const conformance::HostUnderTest& UnderTest() const { return host_; }

 private:
  void FillInObjects() {
    host_.services = ProviderOf(state_);
    host_.make_task = [this] { return MakeTask(state_, {}); };
    host_.make_store = [] { return std::make_shared<StoreObject>(); };
    host_.make_control = MakeControl;
    host_.make_actions = [](const std::vector<std::int32_t>& record_modes) {
      auto actions = std::make_shared<ActionListObject>();
      for (const std::int32_t modes : record_modes) {
        actions->records.push_back(NewAction(*FindActionKind("write-log")));
        actions->records.back().record_modes = modes;
      }
      return actions;
    };
    host_.make_permissions = [] { return std::make_shared<PermissionsObject>(PermissionSet{}); };
    host_.open_wizard = [this](const PageRegistry& pages, const std::string& first_page) {
      return OpenWizard({state_, pages, storage_, MakeControl}, first_page);
    };
  }

  void FillInApplication() {
    host_.data_object = "Customer";
    host_.file_tag = [this](const std::string& tag, const std::string& text) {
      state_.tag_texts[tag] = text;
    };
    host_.store_categories = [this](const std::vector<std::string>& texts) { stored_categories_ = texts; };
    host_.hold_right = [this](int number, bool held) { state_.rights[number] = held; };
    host_.grant = [this](std::string_view key, bool granted) {
      if (!granted) denied_.emplace(key);
      if (granted) denied_.erase(std::string(key));
    };
    host_.store_task = [this](const Ref<AutoTask>& task) {
      const TaskRecord saved = storage_.Save(dynamic_cast<TaskObject&>(*task).Record(), state_.Now());
      return MakeTask(state_, storage_.Load(saved.id).value());
    };
    host_.count_tasks = [this] { return storage_.List().size(); };
  }

  void FillInAnswers() {
    host_.answer_reports = [this](ReportAction answer) { dialogs_.report = answer; };
    host_.answer_boxes = [this](int answer) { dialogs_.box = answer; };
    host_.answer_tag_editor = [this](const auto& tag) { dialogs_.tag = tag; };
    host_.answer_query_builder = [this](const auto& query) { dialogs_.query = query; };
    host_.answer_category_editor = [this](const std::optional<std::vector<std::string>>& texts) {
      dialogs_.categories.reset();
      if (texts) dialogs_.categories.emplace();
      for (const std::string& text : texts.value_or(std::vector<std::string>()))
        dialogs_.categories->push_back({text});
    };
    host_.answer_permission_editor = [this](bool confirmed) {
      dialogs_.permissions = confirmed ? std::optional(PermissionSet()) : std::nullopt;
    };
    host_.ask_context = [](ActionListControl& list) {
      (void)dynamic_cast<VeloActionList&>(list).OfferedKinds();
    };
    host_.remove_action = [](ActionListControl& list) { dynamic_cast<VeloActionList&>(list).Remove(0); };
  }

  ToldDialogs dialogs_;
  HostState state_;
  TextStorage storage_;
  std::set<std::string, std::less<>> denied_;
  std::vector<std::string> stored_categories_;
  conformance::HostUnderTest host_;
};

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : "checked_tasks.txt";
  std::filesystem::remove(path);
  const CheckedHost host(path);
  return conformance::Print(conformance::CheckHost(host.UnderTest()), std::cout);
}
