// The stand-alone host in the hands of the conformance kit, with places where a test can break it.
#pragma once

#include <plovix/base/raised.h>
#include <plovix/conformance/conformance.h>

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
    for (const ObjectRef& made : all) {
      if (auto object = std::dynamic_pointer_cast<T>(made)) objects.push_back(std::move(object));
    }
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
  std::shared_ptr<ActionList> NewActionList() override {
    return shared_actions ? shared_actions : Made<ActionListObject>();
  }
  std::shared_ptr<ValueStore> NewValueStore() override { return Made<StoreObject>(); }
  std::shared_ptr<CategoryList> NewCategoryList() override { return Made<CategoryListObject>(state); }
  std::shared_ptr<Category> NewCategory() override { return Made<CategoryObject>(state); }
  std::shared_ptr<TextCollection> NewTextCollection() override { return Made<TextCollectionObject>(); }
  std::shared_ptr<PermissionEditor> NewPermissionEditor() override { return Made<PermissionEditor>(); }
  std::shared_ptr<QueryDefinition> NewQueryDefinition() override { return Made<QueryDefinitionObject>(); }
  std::shared_ptr<QueryBuilder> NewQueryBuilder() override { return Made<QueryBuilderObject>(state); }
  std::shared_ptr<Recurrence> NewRecurrence() override { return Made<RecurrenceObject>(); }
  std::shared_ptr<DailyPattern> NewDailyPattern() override { return Made<DailyPatternObject>(); }
  std::shared_ptr<WeeklyPattern> NewWeeklyPattern() override { return Made<WeeklyPatternObject>(); }
  std::shared_ptr<MonthlyPattern> NewMonthlyPattern() override { return Made<MonthlyPatternObject>(); }
  std::shared_ptr<YearlyPattern> NewYearlyPattern() override { return Made<YearlyPatternObject>(); }

  HostState& state;
  bool same = false;
  std::shared_ptr<ActionListObject> shared_actions;
  std::vector<ObjectRef> all;
};

struct RiggedServices final : HostServices {
  std::shared_ptr<HostApplication> Application() override {
    return no_application ? nullptr : application ? application : real->Application();
  }
  std::shared_ptr<ObjectFactory> Factory() override { return factory; }
  std::shared_ptr<HostServices> real;
  std::shared_ptr<RiggedFactory> factory;
  bool no_application = false;
  std::shared_ptr<HostApplication> application;  // instead of the real one
};

// Stands between the wizard and a page and does one thing wrong, as a wizard would.
struct Meddler final : WizardPage, WizardHost, std::enable_shared_from_this<Meddler> {
  Meddler(std::string what, std::shared_ptr<WizardPage> real_page)
      : fault(std::move(what)), page(std::move(real_page)) {}
  std::string IWizardPage_Title() override { return page->IWizardPage_Title(); }
  std::string IWizardPage_Description() override { return page->IWizardPage_Description(); }
  void IWizardPage_Initialize(std::shared_ptr<WizardHost> host, std::shared_ptr<ValueStore> store) override {
    wizard = std::move(host);
    if (fault == "no wizard") return page->IWizardPage_Initialize(nullptr, store);
    if (fault == "own store") {
      auto own = std::make_shared<StoreObject>();
      own->values = dynamic_cast<StoreObject&>(*store).values;
      store = own;
    }
    if (fault == "no task") store = std::make_shared<StoreObject>();
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
    const bool knows = fault == "asks once"         ? !answer.empty()
                       : fault == "asks at Refresh" ? !std::exchange(refreshed, false)
                                                    : false;
    if (!knows) page->IWizardPage_GetNextPage(answer = next);
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
  std::shared_ptr<WizardHost> wizard;
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
