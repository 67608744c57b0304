// The stand-alone host in the hands of the conformance kit, with places where a test can break it.
#pragma once

#include <plovix/base/raised.h>
#include <plovix/conformance/conformance.h>
#include <plovix/standalone/objects/category_object.h>
#include <plovix/standalone/objects/recurrence_object.h>
#include <plovix/standalone/objects/session_object.h>

#include <set>

#include "tests/support/scene.h"

namespace plovix::testing_support {

template <class T>
using Objects = std::vector<std::shared_ptr<T>>;

// Makes the host's own objects and remembers them; `same` makes only one of each class.
struct RiggedFactory final : ObjectFactory {
  explicit RiggedFactory(HostState& host_state) : state(host_state) {}
  template <class T>
  [[nodiscard]] Objects<T> All() const {
    Objects<T> objects;
    for (const ObjectRef& made : all)
      if (const auto object = As<T>(made)) objects.push_back(object.Shared());
    return objects;
  }
  template <class T, class... Arguments>
  std::shared_ptr<T> Made(Arguments&... arguments) {
    const Objects<T> made = All<T>();
    if (same && !made.empty()) return made.front();
    const auto another = std::make_shared<T>(arguments...);
    all.push_back(another);
    return another;
  }
  Ref<ActionList> NewActionList() override { return Made<ActionListObject>(); }
  Ref<ValueStore> NewValueStore() override { return Made<StoreObject>(); }
  Ref<CategoryList> NewCategoryList() override { return Made<CategoryListObject>(state); }
  Ref<Category> NewCategory() override { return Made<CategoryObject>(state); }
  Ref<TextCollection> NewTextCollection() override { return Made<TextCollectionObject>(); }
  Ref<PermissionEditor> NewPermissionEditor() override { return Made<PermissionEditor>(); }
  Ref<QueryDefinition> NewQueryDefinition() override { return Made<QueryDefinitionObject>(); }
  Ref<QueryBuilder> NewQueryBuilder() override { return Made<QueryBuilderObject>(state); }
  Ref<Recurrence> NewRecurrence() override { return Made<RecurrenceObject>(); }
  Ref<DailyPattern> NewDailyPattern() override { return Made<DailyPatternObject>(); }
  Ref<WeeklyPattern> NewWeeklyPattern() override { return Made<WeeklyPatternObject>(); }
  Ref<MonthlyPattern> NewMonthlyPattern() override { return Made<MonthlyPatternObject>(); }
  Ref<YearlyPattern> NewYearlyPattern() override { return Made<YearlyPatternObject>(); }

  HostState& state;
  bool same = false;
  std::vector<ObjectRef> all;
};

struct RiggedServices final : HostServices {
  Ref<HostApplication> Application() override { return no_application ? nullptr : real->Application(); }
  Ref<ObjectFactory> Factory() override { return factory; }
  Ref<HostServices> real;
  std::shared_ptr<RiggedFactory> factory;
  bool no_application = false;
};

// Stands between the wizard and a page and does one thing wrong, as a wizard would.
struct Meddler final : WizardPage, WizardHost, std::enable_shared_from_this<Meddler> {
  Meddler(std::string what, std::shared_ptr<WizardPage> real_page)
      : fault(std::move(what)), page(std::move(real_page)) {}
  std::string IWizardPage_Title() override { return page->IWizardPage_Title(); }
  std::string IWizardPage_Description() override { return page->IWizardPage_Description(); }
  void IWizardPage_Initialize(Ref<WizardHost> host, Ref<ValueStore> store) override {
    wizard = std::move(host);
    if (fault == "no wizard") return page->IWizardPage_Initialize(nullptr, store);
    const auto other = std::make_shared<StoreObject>();
    if (fault == "own store") other->values = dynamic_cast<StoreObject&>(*store).values;
    if (fault == "own store" || fault == "no task") store = other;
    try {
      page->IWizardPage_Initialize(std::shared_ptr<WizardHost>(shared_from_this(), this), store);
    } catch (const Failure&) {
      if (fault != "shows what failed") throw;
    }
    if (fault == "no Show") Controls().OnShow(nullptr);
  }
  void IWizardPage_Terminate() override {
    if (fault != "no end") page->IWizardPage_Terminate();
    wizard = nullptr;
  }
  void IWizardPage_GetNextPage(std::string& next) override {
    if (fault == "text in next") next = "former";
    if (fault == "asks once" ? answer.empty() : std::exchange(refreshed, false) || fault != "asks at Refresh")
      page->IWizardPage_GetNextPage(answer = next);
    next = answer;
  }
  bool IWizardPage_CanChangePage(ChangeDirection direction) override {
    if (fault == "wrong direction") direction = ChangeDirection::kNext;
    return page->IWizardPage_CanChangePage(direction) || fault == "ignores refusal";
  }
  bool IWizardPage_BackEnabled() override { return false; }
  bool IWizardPage_CancelEnabled() override { return false; }
  bool IWizardPage_FinishEnabled() override { return false; }
  bool IWizardPage_NextEnabled() override { return false; }
  void IWizardPage_GetMinimumSize(int&, int&) override {}
  Form& Controls() noexcept override { return page->Controls(); }
  void Refresh(bool can_continue) override {
    refreshed = true;
    wizard->Refresh(can_continue || fault == "ignores Refresh");
  }
  void MoveNext() override {
    if (fault != "no MoveNext") wizard->MoveNext();
    if (fault == "drops page" && !wizard) page = nullptr;
  }

  std::string fault, answer;
  bool refreshed = false;
  std::shared_ptr<WizardPage> page;
  Ref<WizardHost> wizard;
};

// The host under test. What a test changes here, or does when one of the host's members is called, is its
// defect.
struct Rig final : CallObserver {
  Rig();
  void HostCalled(std::string_view member) override {
    if (busy || !on_call) return;
    const Raised guard(busy);  // what a defect calls itself goes through
    on_call(member);
  }
  conformance::WizardUnderTest OpenWizard(const PageRegistry& pages, const std::string& first);

  Scene scene;
  HostState& state = scene.state;
  std::shared_ptr<RiggedFactory> factory = std::make_shared<RiggedFactory>(state);
  std::shared_ptr<RiggedServices> services = std::make_shared<RiggedServices>();
  std::shared_ptr<TaskObject> task;
  std::shared_ptr<StoreObject> store;
  std::set<std::string, std::less<>> denied;
  ReportAction report = ReportAction::kLeave;
  std::string wizard_fault;
  std::function<std::shared_ptr<HostControl>(std::string_view name)> make_control = MakeHostControl;
  TaskRecord new_task;
  std::function<void(std::vector<ActionRecord>&)> change_actions = [](auto&) {};
  std::function<void(TaskRecord&)> change_stored = [](auto&) {};
  conformance::HostUnderTest host;
  std::vector<std::shared_ptr<void>> kept;  // wizards that are never closed
  std::function<void(std::string_view member)> on_call;
  bool busy = false;
  ObserveCalls observe{*this};
};

}  // namespace plovix::testing_support
