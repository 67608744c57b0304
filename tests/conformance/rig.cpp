#include "rig.h"

namespace plovix::testing_support {

Rig::Rig() {
  state.texts = TextTable();
  for (int id = 1; id <= 123; ++id)
    state.texts.page_texts[id] = "Text " + std::to_string(id) + (id == 56 ? " {1}" : "");
  scene.data->entries = {{{"Customer", "Customers", "Id"}, {}}, {{"Order", "Orders", "Id"}, {}}};
  state.has_permission = [this](std::string_view key, const DataObjectRecord*) {
    return !denied.contains(key);
  };
  scene.dialogs.on_report = [this](const FailureReport&) { return static_cast<int>(report); };

  const ServicesProvider real = ProviderOf(state);
  services->real = real.host_services();
  services->factory = factory;
  host.services = {[this] { return services; }, real.utilities};
  host.make_task = [this] { return task = MakeTask(state, new_task); };
  host.make_store = [this] { return store = std::make_shared<StoreObject>(); };
  host.make_control = [this](std::string_view name) { return make_control(name); };
  host.make_actions = [this](const std::vector<std::int32_t>& record_modes) {
    auto actions = std::make_shared<ActionListObject>();
    for (const std::int32_t modes : record_modes) {
      actions->records.push_back(LogAction("line"));
      actions->records.back().record_modes = modes;
    }
    change_actions(actions->records);
    return actions;
  };
  host.make_permissions = [] { return std::make_shared<PermissionsObject>(PermissionSet{}); };
  host.open_wizard = [this](const PageRegistry& pages, const std::string& first) {
    return OpenWizard(pages, first);
  };
  host.data_object = "Customer";
  host.file_tag = [this](const std::string& tag, const std::string& text) { state.tag_texts[tag] = text; };
  host.store_categories = [this](const std::vector<std::string>& texts) { scene.stored_categories = texts; };
  host.hold_right = [this](int number, bool held) { state.rights[number] = held; };
  host.grant = [this](std::string_view key, bool granted) {
    if (granted) denied.erase(std::string(key));
    if (!granted) denied.emplace(key);
  };
  host.wall_clock = state.clock;
  host.answer_reports = [this](ReportAction answer) { report = answer; };
  host.answer_boxes = [this](int answer) { scene.dialogs.answers.assign(9, answer); };
  host.answer_tag_editor = [this](const auto& tag) { scene.dialogs.chosen_tag = tag; };
  host.answer_query_builder = [this](const auto& query) { scene.dialogs.chosen_query = query; };
  host.answer_category_editor = [this](const std::optional<std::vector<std::string>>& texts) {
    scene.dialogs.chosen_categories.reset();
    if (texts) scene.dialogs.chosen_categories.emplace();
    for (const std::string& text : texts.value_or(std::vector<std::string>())) {
      scene.dialogs.chosen_categories->push_back({text, true});
    }
  };
  host.answer_permission_editor = [this](bool confirmed) {
    scene.dialogs.chosen_permissions = confirmed ? std::optional(PermissionSet()) : std::nullopt;
  };
  host.ask_context = [](ActionListControl& control) {
    (void)dynamic_cast<VeloActionList&>(control).OfferedKinds();
  };
  host.remove_action = [](ActionListControl& control) { dynamic_cast<VeloActionList&>(control).Remove(0); };
  host.store_task = [this](const Ref<AutoTask>& given) {
    TaskRecord stored = scene.storage.Save(dynamic_cast<TaskObject&>(*given).Record(), state.Now());
    change_stored(stored);
    return task = MakeTask(state, stored);
  };
  host.count_tasks = [this] { return scene.storage.List().size(); };
  host.before_check = [](const std::string&) {};
}

conformance::WizardUnderTest Rig::OpenWizard(const PageRegistry& pages, const std::string& first) {
  struct Opened {
    PageRegistry registry;
    std::optional<VeloWiz> wizard;
  };
  const auto opened = std::make_shared<Opened>();
  for (const std::string& identifier : pages.Identifiers()) {
    const auto real = pages.Find(identifier);
    opened->registry.Add(std::make_shared<FactoryOf>(
        identifier, [=, this, made = std::shared_ptr<WizardPage>()]() mutable -> std::shared_ptr<WizardPage> {
          if (wizard_fault.empty()) return real->CreatePage();
          if (!made || wizard_fault != "same page")
            made = std::make_shared<Meddler>(wizard_fault, real->CreatePage());
          return made;
        }));
  }
  opened->wizard.emplace(WizardParts{state, opened->registry, scene.storage, make_control}, TaskRecord{});
  opened->wizard->Open(first);
  if (wizard_fault == "keeps pages") kept.push_back(opened);
  const auto press = [this, opened](ChangeDirection button) {
    VeloWiz& wizard = *opened->wizard;
    if (wizard_fault == "lets through" && scene.dialogs.reports.size() > 0)
      throw std::runtime_error("let through");
    constexpr std::array verbs{&VeloWiz::Next, &VeloWiz::Back, &VeloWiz::Finish, &VeloWiz::Cancel};
    auto verb = verbs.at(static_cast<std::size_t>(button));
    if (verb == &VeloWiz::Finish && wizard_fault == "Finish stores nothing")
      verb = &VeloWiz::Cancel;
    else if (verb == &VeloWiz::Cancel && wizard_fault == "Cancel stores" && wizard.Buttons().finish)
      verb = &VeloWiz::Finish;
    while ((wizard.*verb)() && verb == &VeloWiz::Back && wizard_fault == "Back to the start") continue;
  };
  const auto enabled = [opened](ChangeDirection button) {
    const WizardButtons buttons = opened->wizard->Buttons();
    const bool by_direction[] = {buttons.next, buttons.back, buttons.finish, buttons.cancel};
    return by_direction[static_cast<std::size_t>(button)];
  };
  return {press, enabled, [opened](Control& control) { opened->wizard->User().Click(control); }};
}

}  // namespace plovix::testing_support
