// Walks the component's real pages on the host's objects. Separate from the other checks, so that a program
// without this walk does not link the pages.
#include <plovix/component/entry_points.h>
#include <plovix/controls/user.h>

#include <algorithm>

#include "examination.h"

namespace plovix::conformance {
namespace {

// What a user enters into a control: a text, an entry of a list, or a time in seconds; empty for a check box
// or an option, which is turned on.
struct Entry {
  const char* control;
  std::string value = {};
};
struct Stop {
  std::string page;
  std::vector<Entry> entries;
};
using Road = std::vector<Stop>;

// Surrounds a page: wizard, listener, and the host's application except for what would wait for a person.
class Company final : public HostApplication,
                      public plovix::ErrorReporter,
                      public WizardHost,
                      public UserListener {
 public:
  explicit Company(Ref<HostApplication> real) : real_(std::move(real)) {}
  Ref<LanguageTable> Language() override { return real_->Language(); }
  Ref<plovix::Translator> Translator() override { return real_->Translator(); }
  Ref<plovix::ErrorReporter> ErrorReporter() override {
    return std::shared_ptr<plovix::ErrorReporter>(real_.Shared(), this);
  }
  Ref<plovix::UserRights> UserRights() override { return real_->UserRights(); }
  Ref<plovix::Session> Session() override { return real_->Session(); }
  Ref<plovix::Database> Database() override { return real_->Database(); }
  Ref<plovix::DataObjectCatalog> DataObjectCatalog() override { return real_->DataObjectCatalog(); }
  Ref<ObjectLoader> Loader() override { return real_->Loader(); }
  std::string Title() override { return real_->Title(); }
  std::string Path() override { return real_->Path(); }
  bool LanguageTagMode() override { return (void)real_->LanguageTagMode(), false; }  // texts are typed
  std::string DecimalSeparator() override { return real_->DecimalSeparator(); }
  DateTime Now() override { return real_->Now(); }
  int MsgBox(const std::string& prompt, int buttons, const std::string&, const std::string&) override {
    told += "a box says \"" + prompt + "\"; ";
    return buttons == message_box::kYesNoQuestion ? message_box::kYes : message_box::kOk;
  }
  ReportAction Report(int number, const std::string& description, std::string_view, std::string_view,
                      std::string_view procedure, int line) override {
    told += "failure " + std::to_string(number) + " in " + std::string(procedure) + ", line " +
            std::to_string(line) + ": " + description + "; ";
    return ReportAction::kLeave;
  }
  void Refresh(bool can) override { can_continue = can; }
  void MoveNext() override {}
  void EventBegins() override {}
  void EventEnds() override {}
  void EventFailed(const Failure& failure, std::string_view procedure) override {
    (void)Report(failure.Number(), failure.Description(), "", "", procedure, 0);
  }

  std::string told;          // what the user was told; empty as long as all is well
  bool can_continue = true;  // until the page says otherwise

 private:
  Ref<HostApplication> real_;
};

struct WatchedServices final : HostServices {
  explicit WatchedServices(Ref<HostServices> real_services)
      : real(std::move(real_services)),
        company(std::make_shared<Company>(Given(real->Application(), "Application"))) {}
  Ref<HostApplication> Application() override { return company; }
  Ref<ObjectFactory> Factory() override { return real->Factory(); }
  Ref<HostServices> real;
  std::shared_ptr<Company> company;
};

DateTime Moment(const std::string& seconds) {
  return kZeroDate + std::chrono::seconds(std::stoll(seconds));
}

// False if the user cannot.
bool Enter(User& user, Control& control, const std::string& value) {
  if (dynamic_cast<OptionButton*>(&control) != nullptr) return user.Choose(control);
  if (auto* box = dynamic_cast<CheckBox*>(&control)) return box->Checked() || user.Toggle(control);
  if (dynamic_cast<DateTimePicker*>(&control) != nullptr) return user.Set(control, Moment(value));
  auto* list = dynamic_cast<ComboBox*>(&control);
  if (list == nullptr || list->Editable()) return user.Type(control, value);
  int index = 0;
  while (index < list->Count() && list->ItemText(index) != value) ++index;
  return user.Pick(control, index);
}

bool Shows(const Control& control, const std::string& value) {
  if (const auto* option = dynamic_cast<const OptionButton*>(&control)) return option->Selected();
  if (const auto* box = dynamic_cast<const CheckBox*>(&control)) return box->Checked();
  if (const auto* picker = dynamic_cast<const DateTimePicker*>(&control))
    return picker->Value() == Moment(value);
  if (const auto* list = dynamic_cast<const ComboBox*>(&control)) return list->Text() == value;
  return dynamic_cast<const TextBox&>(control).Text() == value;
}

// The path of a task with the given pattern; `data`: caption of the data object that it works on, or empty.
Road RoadTo(const char* option, const Stop& pattern, const std::string& data) {
  Road road = {{"AutoTaskType", {{data.empty() ? "optNoData" : "optQueryResults"}}},
               {"Details",
                {{"txtName", " Größe 1 "},
                 {"txtDescription", "one\ntwo"},
                 {"txtShortDescription", "short"},
                 {"cboCategory", "House & Garden"},
                 {"chkAutoMan"}}}};
  if (data.empty()) {
    road.push_back({"RecurrenceTime", {{"optEveryNHour"}, {"txtHours", "6"}}});
  } else {
    road.back().entries.push_back({"cboDataObject", data});
    road.back().entries.push_back({"chkSkipRowSelection"});
    road.push_back({"Records",
                    {{"optModified"},
                     {"chkProcessAll"},
                     {"chkUseBaseDate"},
                     {"dtpDate", "3974400000"},
                     {"dtpTime", "29107"}}});
    road.push_back({"RecurrenceTime", {{"optSpecificTime"}, {"dtpTime", "29107"}}});
  }
  road.push_back({"RecurrencePattern", {{option}}});
  road.push_back(pattern);
  if (!data.empty()) road.push_back({"Query", {{"txtQuery", " SELECT 1\n"}}});
  road.push_back({"Actions", {}});
  return road;
}

class Walk {
 public:
  Walk(Examination& exam, std::shared_ptr<Company> company)
      : exam_(exam), company_(std::move(company)), task_(exam.Task()), store_(NewStore()) {}

  // Visits the pages in turn, then each again with only the task, and once more with the task as the host
  // stored it.
  void Go(const Road& road) {
    for (std::size_t i = 0; i < road.size(); ++i) {
      const std::string next = i + 1 < road.size() ? "Plovix." + road[i + 1].page : "";
      if (next.empty()) task_->SetActions(exam_.Actions({1, 8, 16}));
      exam_.Check(road[i].page + " cannot be filled in and left for the page that follows",
                  [&] { return Fill(road[i], next) && (company_->told.empty() || Say("")); });
      if (exam_.findings.back().verdict != Verdict::kPassed) return;
    }
    const auto visit = [&](const std::string& what) {
      for (const Stop& stop : road) {
        exam_.Check(stop.page + " does not show again what was " + what,
                    [&] { return Remembers(stop) && (company_->told.empty() || Say("")); });
      }
    };
    visit("entered and saved");
    const auto& store_task = exam_.host.store_task;
    if (!store_task) return;
    task_ = Given(store_task(task_), "store_task");
    visit("stored");
  }

 private:
  [[nodiscard]] Ref<ValueStore> NewStore() const {
    const auto store = exam_.Store();
    store->SetItem(store_key::kAutoTask, task_);
    return store;
  }
  bool Say(const std::string& what) {
    exam_.detail = company_->told + what;
    return false;
  }

  [[nodiscard]] std::shared_ptr<WizardPage> Open(const std::string& name, const Ref<ValueStore>& store) {
    company_->told.clear();
    company_->can_continue = true;
    std::shared_ptr<PageFactory> factory;
    (void)plovix_class_factory(kInterfaceVersion, ("Plovix." + name).c_str(), &factory, nullptr);
    auto page = Given(factory, "plovix_class_factory")->CreatePage();
    for (std::size_t i = 0; i < page->Controls().Count(); ++i) {
      if (auto* slot = dynamic_cast<HostSlot*>(&page->Controls().At(i)))
        slot->Embed(exam_.Control().Shared());
    }
    page->IWizardPage_Initialize(company_, store);
    user_.Show(page->Controls());
    return page;
  }

  bool Fill(const Stop& stop, const std::string& following) {
    const auto page = Open(stop.page, store_);
    for (const auto& [name, value] : stop.entries) {
      if (!Enter(user_, page->Controls().Get(name), value))
        return Say(std::string(name) + " does not take " + value);
    }
    const auto direction = following.empty() ? ChangeDirection::kFinish : ChangeDirection::kNext;
    if (!company_->can_continue || !page->IWizardPage_CanChangePage(direction)) return Say("the page stays");
    std::string next;
    page->IWizardPage_GetNextPage(next);
    page->IWizardPage_Terminate();
    return next == following || Say("what follows is \"" + next + "\"");
  }

  bool Remembers(const Stop& stop) {
    const auto page = Open(stop.page, NewStore());
    for (const auto& [name, value] : stop.entries) {
      if (!Shows(page->Controls().Get(name), value)) return Say(std::string(name) + " lost " + value);
    }
    page->IWizardPage_Terminate();
    return stop.page != "Actions" || Given(task_->Actions(), "Actions")->Count() == 3 ||
           Say("actions are missing");
  }

  Examination& exam_;
  std::shared_ptr<Company> company_;
  Ref<AutoTask> task_;
  Ref<ValueStore> store_;
  User user_{*company_};
};

}  // namespace

Findings WalkPages(const HostUnderTest& host) {
  const struct {
    const char* option = nullptr;
    bool data = false;
    Stop pattern = {};
  } roads[] = {
      {"optDaily", false, {"DailyRecurrence", {{"txtDays", "40"}, {"chkWeekdays"}}}},
      {"optWeekly", true, {"WeeklyRecurrence", {{"txtWeeks", "3"}, {"chkMonday"}, {"chkSaturday"}}}},
      {"optMonthly", false, {"MonthlyRecurrence", {{"txtDay", "28"}, {"txtSpecificDayMonth", "2"}}}},
      {"optYearly", true, {"YearlyRecurrence", {{"txtSpecificDay", "12"}}}},
  };
  Examination exam(host);
  for (const auto& [option, data, pattern] : roads) {
    exam.About("Road to " + pattern.page, [&] {
      InstallServices(host.services);
      std::string caption;
      if (data && host.data_object.empty()) throw Missing{"data_object"};
      if (data) {
        const auto catalog = Given(exam.Application()->DataObjectCatalog(), "DataObjectCatalog");
        caption = Given(catalog->Find(host.data_object), "Find")->Caption();
      }
      (void)Needed(host.services.host_services, "services");
      auto watched = std::make_shared<WatchedServices>(Given(host.services.host_services(), "services"));
      InstallServices({[watched] { return watched; }, host.services.utilities});
      Walk(exam, watched->company).Go(RoadTo(option, pattern, caption));
    });
  }
  InstallServices(host.services);
  return exam.findings;
}

Findings CheckHost(const HostUnderTest& host) {
  Findings all;
  for (const auto check : {CheckObjects, CheckWizard, WalkPages}) {
    for (Finding& finding : check(host)) all.push_back(std::move(finding));
  }
  return all;
}

}  // namespace plovix::conformance
