// The conformance kit on this host: copy it and put objects of your own in the place of these. The exit
// status is 0 when all that the pages count on is there. Works on a file of its own, which the argument
// names.
#include <plovix/conformance/conformance.h>
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

void LetAnswer(conformance::HostUnderTest& host, ToldDialogs& dialogs) {
  host.answer_reports = [&](ReportAction answer) { dialogs.report = answer; };
  host.answer_boxes = [&](int answer) { dialogs.box = answer; };
  host.answer_tag_editor = [&](const auto& tag) { dialogs.tag = tag; };
  host.answer_query_builder = [&](const auto& query) { dialogs.query = query; };
  host.answer_category_editor = [&](const std::optional<std::vector<std::string>>& texts) {
    dialogs.categories.reset();
    if (texts) dialogs.categories.emplace();
    for (const std::string& text : texts.value_or(std::vector<std::string>()))
      dialogs.categories->push_back({text});
  };
  host.answer_permission_editor = [&](bool confirmed) {
    dialogs.permissions = confirmed ? std::optional(PermissionSet()) : std::nullopt;
  };
}

int Check(const std::string& path) {
  ToldDialogs dialogs;
  HostState state;
  state.dialogs = &dialogs;
  state.user_id = "ann";
  state.session_id = "session";
  state.texts = LoadLanguage("en");
  auto data = std::make_shared<MemoryDataSource>();
  data->entries = {{{"Customer", "Customers", "Id"}, {}}, {{"Invoice", "Invoices", "Number"}, {}}};
  state.data = data;
  std::set<std::string, std::less<>> denied;
  state.has_permission = [&](std::string_view key, const DataObjectRecord*) { return !denied.contains(key); };
  TextStorage storage(path, state.texts);
  std::vector<std::string> stored_categories;
  state.open_rows = [&](const std::string&) { return CategoryRows(stored_categories); };

  conformance::HostUnderTest host;
  host.services = ProviderOf(state);
  host.make_task = [&] { return MakeTask(state, {}); };
  host.make_store = [] { return std::make_shared<StoreObject>(); };
  host.make_control = MakeControl;
  host.make_actions = [](const std::vector<std::int32_t>& record_modes) {
    auto actions = std::make_shared<ActionListObject>();
    for (const std::int32_t modes : record_modes) {
      actions->records.push_back(NewAction(*FindActionKind("write-log")));
      actions->records.back().record_modes = modes;
    }
    return actions;
  };
  host.make_permissions = [] { return std::make_shared<PermissionsObject>(PermissionSet{}); };
  host.open_wizard = [&](const PageRegistry& pages, const std::string& first_page) {
    return OpenWizard({state, pages, storage, MakeControl}, first_page);
  };
  host.data_object = "Customer";
  host.file_tag = [&](const std::string& tag, const std::string& text) { state.tag_texts[tag] = text; };
  host.store_categories = [&](const std::vector<std::string>& texts) { stored_categories = texts; };
  host.hold_right = [&](int number, bool held) { state.rights[number] = held; };
  host.grant = [&](std::string_view key, bool granted) {
    if (!granted) denied.emplace(key);
    if (granted) denied.erase(std::string(key));
  };
  LetAnswer(host, dialogs);
  host.ask_context = [](ActionListControl& list) {
    (void)dynamic_cast<VeloActionList&>(list).OfferedKinds();
  };
  host.remove_action = [](ActionListControl& list) { dynamic_cast<VeloActionList&>(list).Remove(0); };
  host.store_task = [&](const std::shared_ptr<AutoTask>& task) {
    const TaskRecord saved = storage.Save(dynamic_cast<TaskObject&>(*task).Record(), state.Now());
    return MakeTask(state, storage.Load(saved.id).value());
  };
  host.count_tasks = [&] { return storage.List().size(); };
  const int status = conformance::Print(conformance::CheckHost(host), std::cout);
  InstallServices({});
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : "checked_tasks.txt";
  std::filesystem::remove(path);
  return Check(path);
}
