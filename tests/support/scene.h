// A stand-alone host in memory for the tests of pages and wizard: scripted dialogs that record, a registry of
// the real pages, and a bench for a single page.
#pragma once

#include <gtest/gtest.h>
#include <plovix/component/entry_points.h>
#include <plovix/standalone/objects/call_gate.h>
#include <plovix/standalone/objects/velo_action_list.h>
#include <plovix/standalone/tasks/category_rows.h>
#include <plovix/standalone/wizard/velo_wiz.h>

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace plovix::testing_support {

// Answers from its lists, or with OK/Yes to a box and "leave" to a report; records everything.
class ScriptedDialogs final : public HostDialogs {
 public:
  int MessageBox(const std::string& prompt, int buttons, const std::string& title) override {
    boxes.push_back(prompt + "/" + std::to_string(buttons) + (title.empty() ? " untitled" : ""));
    EXPECT_TRUE(title.empty() || title == "Plovix") << title;
    if (on_box) return on_box(prompt, buttons);
    if (answers.empty()) return buttons == message_box::kYesNoQuestion ? message_box::kYes : message_box::kOk;
    const int answer = answers.front();
    answers.pop_front();
    return answer;
  }
  ReportAction Report(const FailureReport& report) override {
    EXPECT_EQ(std::current_exception(), nullptr) << "an exception is alive while a dialog may be shown";
    reports.push_back(report);
    return static_cast<ReportAction>(on_report ? on_report(report) : 2);
  }
  std::optional<std::string> EditTag(const std::string& tag,
                                     const std::vector<std::string>& choices) override {
    edited_tags.push_back(tag);
    for (const std::string& choice : choices) edited_tags.back() += "," + choice;
    return chosen_tag;
  }
  std::optional<std::vector<CategoryRecord>> EditCategories(const std::vector<CategoryRecord>& categories,
                                                            bool tagged,
                                                            const std::vector<std::string>& known) override {
    edited_categories.push_back(tagged ? "tagged" : "literal");
    for (const auto& category : categories) edited_categories.back() += "," + category.tag;
    for (const auto& text : known) edited_categories.back() += "|" + text;
    return chosen_categories;
  }
  std::optional<std::string> BuildQuery(const std::string& text, const DataObjectRecord& object) override {
    built_queries.push_back(object.name + ":" + text);
    return chosen_query;
  }
  std::optional<PermissionSet> EditPermissions(const std::optional<PermissionSet>& permissions,
                                               const std::string& title) override {
    edited_permissions.push_back(title + (permissions ? "" : " none"));
    return chosen_permissions;
  }

  std::vector<std::string> boxes;  // "PROMPT/BUTTONS"
  std::deque<int> answers;
  std::function<int(const std::string& prompt, int buttons)> on_box;
  std::vector<FailureReport> reports;
  std::function<int(const FailureReport&)> on_report;
  std::vector<std::string> edited_tags;
  std::optional<std::string> chosen_tag;
  std::vector<std::string> edited_categories;  // "literal,OWN,...|KNOWN|..."
  std::optional<std::vector<CategoryRecord>> chosen_categories;
  std::vector<std::string> built_queries;  // "OBJECT:TEXT"
  std::optional<std::string> chosen_query;
  std::vector<std::string> edited_permissions;  // "TITLE" or "TITLE none"
  std::optional<PermissionSet> chosen_permissions;
};

// The wizard as a single page sees it.
class RecordingHost final : public WizardHost {
 public:
  void Refresh(bool can_continue) override {
    Called("WizardHost.Refresh");
    pushes.push_back(can_continue);
  }
  void MoveNext() override {
    Called("WizardHost.MoveNext");
    ++moves;
  }
  std::vector<bool> pushes;
  int moves = 0;
};

inline std::shared_ptr<HostControl> MakeHostControl(std::string_view registered_name) {
  if (registered_name != "VeloDesignerCtrl.VeloActionList") return nullptr;
  return std::make_shared<VeloActionList>();
}

// Creates its pages as the test says.
class FactoryOf final : public PageFactory {
 public:
  using Make = std::function<std::shared_ptr<WizardPage>()>;
  FactoryOf(std::string identifier, Make make) : identifier_(std::move(identifier)), make_(std::move(make)) {}
  [[nodiscard]] const std::string& Identifier() const noexcept override { return identifier_; }
  [[nodiscard]] std::shared_ptr<WizardPage> CreatePage() override { return make_(); }

 private:
  std::string identifier_;
  Make make_;
};

// Installed during its lifetime. Every text is its number: "[27]".
struct Scene {
  Scene() {
    state.dialogs = &dialogs;
    state.texts = TextTable::Ids();
    state.marker_file = false;
    state.path = "/nowhere";
    state.clock = [] { return DateTime{std::chrono::seconds{1'800'000'000}}; };
    state.user_id = "ann";
    state.session_id = "session";
    state.data = data;
    state.open_rows = [this](const std::string& query) {
      EXPECT_EQ(query, "SELECT Category FROM VeloAutoTasks");
      return CategoryRows(stored_categories);
    };
    RegisterPages(registry);
    InstallHost(state);
  }
  ~Scene() { InstallServices({}); }
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
  [[nodiscard]] WizardParts Parts() { return {state, registry, storage, MakeHostControl}; }

  ScriptedDialogs dialogs;
  HostState state;
  std::shared_ptr<MemoryDataSource> data = std::make_shared<MemoryDataSource>();
  std::vector<std::string> stored_categories;  // the columns of the stored tasks
  PageRegistry registry;
  MemoryStorage storage;
};

using Entries = std::map<std::string, Value>;

// One page without a wizard. Failures that its event procedures let through are kept in `escaped`.
class Bench final : public UserListener {
 public:
  Bench(Scene& scene, const std::string& identifier, const TaskRecord& record = {},
        const Entries& entries = {})
      : task(MakeTask(scene.state, record)), page(scene.registry.Create(identifier)) {
    store->values = entries;
    store->values[store_key::kAutoTask] = ObjectRef(task);
    for (std::size_t i = 0; i < Controls().Count(); ++i) {
      auto* slot = dynamic_cast<HostSlot*>(&Controls().At(i));
      if (slot != nullptr) slot->Embed(MakeHostControl(slot->RegisteredName()));
    }
  }
  Bench& Initialize() {
    page->IWizardPage_Initialize(host, store);
    return *this;
  }
  [[nodiscard]] Form& Controls() const { return page->Controls(); }
  template <class T>
  [[nodiscard]] T& Get(std::string_view name) const {
    return dynamic_cast<T&>(Controls().Get(name));
  }
  [[nodiscard]] Control& operator[](std::string_view name) const { return Controls().Get(name); }
  [[nodiscard]] std::string Text(std::string_view name) const { return Get<TextBox>(name).Text(); }
  [[nodiscard]] VeloActionList& ActionRows() const {
    return dynamic_cast<VeloActionList&>(*Get<HostSlot>("VeloActionList").Embedded());
  }
  [[nodiscard]] bool Leave(ChangeDirection direction) { return page->IWizardPage_CanChangePage(direction); }
  [[nodiscard]] std::string Next(std::string next = "as passed") {
    page->IWizardPage_GetNextPage(next);
    return next;
  }

  void EventBegins() override {}
  void EventEnds() override {}
  void EventFailed(const Failure& failure, std::string_view /*procedure*/) override {
    escaped.push_back(failure);
  }

  std::shared_ptr<TaskObject> task;
  std::shared_ptr<StoreObject> store = std::make_shared<StoreObject>();
  std::shared_ptr<RecordingHost> host = std::make_shared<RecordingHost>();
  std::shared_ptr<WizardPage> page;
  User user{*this};
  std::vector<Failure> escaped;
};

inline ActionRecord LogAction(const std::string& text) {
  ActionRecord action = NewAction(*FindActionKind("write-log"));
  action.settings["text"] = text;
  return action;
}

inline TaskRecord CompleteTask(std::int16_t mode = 0) {
  TaskRecord task;
  task.record_mode = mode;
  task.name = "Name";
  task.description = "Description";
  task.data_object_name = "Customer";
  task.data_object_caption = "Customers";
  task.actions = {LogAction("one")};
  task.recurrence = RecurrenceRecord{};
  return task;
}

}  // namespace plovix::testing_support
