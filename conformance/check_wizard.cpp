// Checks of a host's wizard: the kit's own pages record what the wizard does with them.
#include <algorithm>
#include <map>
#include <vector>

#include "examination.h"

namespace plovix::conformance {
namespace {

const std::string kFirst = "Conformance.First";
const std::string kSecond = "Conformance.Second";
const std::string kThird = "Conformance.Third";
constexpr ControlInfo kRows[] = {{"lblNext", Kind::kLabel, "Next"},
                                 {"lblLast", Kind::kLabel, "Last"},
                                 {"slotActions", Kind::kHostSlot, "VeloDesignerCtrl.VeloActionList"}};
constexpr std::string_view kLines[] = {"lblNext", "lblLast", "slotActions"};

class ProbePage;

// The answers of one wizard's pages, and the calls that they have seen.
struct Script {
  std::map<std::string, std::string> next = {{kFirst, kSecond}};  // no other page has a next one
  bool may_leave = true;
  std::string fails;      // the operation that fails
  std::string calls;      // "1Initialize 1Show 1Leave0 ..."
  bool odd_next = false;  // GetNextPage was called with a text in `next`
  bool let_go = false;    // a page was dropped while its event procedure ran
  // All pages created; kept, so that no fault of a host ends in a crash.
  std::vector<std::shared_ptr<ProbePage>> pages;
};

class ProbePage final : public WizardPage {
 public:
  ProbePage(std::shared_ptr<Script> script, std::string page_identifier)
      : identifier(std::move(page_identifier)), script_(std::move(script)), form_({"Probe", kRows, kLines}) {
    form_.OnShow([this] { Called("Show"); });
    form_.At(1).On(Event::kClick, [this] { script_->next[identifier].clear(); });
    form_.At(0).On(Event::kClick, [this] {
      if (wizard) wizard->MoveNext();
      script_->let_go = script_->let_go || script_->pages.at(number - 1).use_count() == 1;
    });
  }
  std::string IWizardPage_Title() override { return "Title"; }
  std::string IWizardPage_Description() override { return "Description"; }
  void IWizardPage_Initialize(Ref<WizardHost> host, Ref<ValueStore> shared) override {
    wizard = std::move(host);
    store = std::move(shared);
    control = dynamic_cast<HostSlot&>(form_.At(2)).Embedded();
    Called("Initialize");
    if (wizard) wizard->Refresh(true);
  }
  void IWizardPage_Terminate() override {
    Called("Terminate");
    wizard = nullptr;
    store = nullptr;
  }
  void IWizardPage_GetNextPage(std::string& next) override {
    script_->odd_next = script_->odd_next || !next.empty();
    if (script_->fails == "Next") throw Failure(failure_number::kObjectNotSet, "Next");
    next = script_->next[identifier];
  }
  bool IWizardPage_CanChangePage(ChangeDirection direction) override {
    Called("Leave" + std::to_string(static_cast<int>(direction)));
    return script_->may_leave;
  }
  bool IWizardPage_BackEnabled() override { return false; }
  bool IWizardPage_CancelEnabled() override { return false; }
  bool IWizardPage_FinishEnabled() override { return false; }
  bool IWizardPage_NextEnabled() override { return false; }
  void IWizardPage_GetMinimumSize(int&, int&) override {}
  Form& Controls() noexcept override { return form_; }

  const std::string identifier;
  std::size_t number = 0;  // counted from 1, in the order of creation
  Ref<WizardHost> wizard;
  Ref<ValueStore> store;
  std::shared_ptr<HostControl> control;

 private:
  void Called(const std::string& operation) {
    script_->calls += std::to_string(number) + operation + ' ';
    if (script_->fails == operation) throw Failure(failure_number::kObjectNotSet, operation);
  }
  std::shared_ptr<Script> script_;
  Form form_;
};

class ProbeFactory final : public PageFactory {
 public:
  ProbeFactory(std::shared_ptr<Script> script, std::string identifier)
      : script_(std::move(script)), identifier_(std::move(identifier)) {}
  const std::string& Identifier() const noexcept override { return identifier_; }
  std::shared_ptr<WizardPage> CreatePage() override {
    script_->pages.push_back(std::make_shared<ProbePage>(script_, identifier_));
    script_->pages.back()->number = script_->pages.size();
    return script_->pages.back();
  }

 private:
  std::shared_ptr<Script> script_;
  std::string identifier_;
};

// A wizard of the host, opened on the first page.
class Ride {
 public:
  explicit Ride(const Examination& exam, const std::string& fails = "") {
    script->fails = fails;
    for (const std::string& identifier : {kFirst, kSecond, kThird}) {
      registry_.Add(std::make_shared<ProbeFactory>(script, identifier));
    }
    driver = Needed(exam.host.open_wizard, "open_wizard")(registry_, kFirst);
  }

  void Press(ChangeDirection button) { driver.press(button); }
  [[nodiscard]] bool Enabled(ChangeDirection button) const { return driver.enabled(button); }
  // Clicks on a label of the page. The first label calls MoveNext; the second makes a choice after which no
  // page follows, without refreshing.
  void Click(std::size_t label = 0) const {
    Needed(driver.click, "open_wizard's click")(Page().Controls().At(label));
  }
  // The page created last.
  [[nodiscard]] ProbePage& Page() const {
    return *Given(script->pages.empty() ? nullptr : script->pages.back(), "open_wizard");
  }
  void Refresh(bool can_continue) const { Given(Page().wizard, "Initialize")->Refresh(can_continue); }
  // The task in the store of the page; may be null.
  [[nodiscard]] Ref<AutoTask> Task() const {
    return ObjectFrom<AutoTask>(Given(Page().store, "Initialize")->GetValue(store_key::kAutoTask, {}));
  }
  // Sets the first page's next page from now on, as a user's choice does.
  void Follow(const std::string& next) const {
    script->next[kFirst] = next;
    Refresh(true);
  }
  [[nodiscard]] bool Saw(const std::string& call) const {
    return script->calls.find(call + ' ') != std::string::npos;
  }

  std::shared_ptr<Script> script = std::make_shared<Script>();

 private:
  // Pages hold the script and, if the wizard does not end them, the wizard.
  struct Release {
    std::shared_ptr<Script> script;
    ~Release() {
      for (const auto& page : std::exchange(script->pages, {})) page->wizard = nullptr;
    }
  };
  Release release_{script};
  PageRegistry registry_;

 public:
  WizardUnderTest driver;  // goes first
};

constexpr auto kNext = ChangeDirection::kNext;
constexpr auto kBack = ChangeDirection::kBack;
constexpr auto kFinish = ChangeDirection::kFinish;
constexpr auto kCancel = ChangeDirection::kCancel;

void CheckPages(Examination& exam) {
  exam.Check("Initialize gets no wizard or no store: no page could find the task or enable Next", [&] {
    const Ride ride(exam);
    return ride.Page().wizard != nullptr && ride.Page().store != nullptr;
  });
  exam.Check("The store does not hold the task as \"AutoTask\": every page would report failure 91", [&] {
    const Ride ride(exam);
    return ride.Task() != nullptr;
  });
  exam.Check("Initialize comes before the action list is embedded: its page would report failure 91", [&] {
    const Ride ride(exam);
    return std::dynamic_pointer_cast<ActionListControl>(ride.Page().control) != nullptr;
  });
  exam.Check("A page is not loaded once and then shown by User::Show: its lists would stay empty",
             [&] { return Ride(exam).script->calls.starts_with("1Initialize 1Show "); });
}

void CheckLifetimes(Examination& exam) {
  exam.Check("Pages do not share one store: what a page stores for later ones would be lost", [&] {
    Ride ride(exam);
    const auto store = ride.Page().store;
    ride.Press(kNext);
    return ride.script->pages.size() == 2 && ride.Page().store == store;
  });
  exam.Check("A page object is shown twice: boxes that were checked before would stay checked", [&] {
    Ride ride(exam);
    ride.Press(kNext);
    ride.Press(kBack);
    return ride.Saw("3Initialize");
  });
  exam.Check("A page that is left is not ended once, or is kept: the library could not be unloaded", [&] {
    Ride ride(exam);
    ride.Press(kNext);
    const std::string left = "1Terminate ";
    const std::size_t first = ride.script->calls.find(left);
    if (first == std::string::npos || ride.script->calls.find(left, first + 1) != std::string::npos)
      return false;
    ride.Press(kFinish);
    ride.driver = {};
    return ride.Saw("2Terminate") &&
           std::ranges::all_of(ride.script->pages, [](const auto& page) { return page.use_count() == 1; });
  });
  exam.Check("GetNextPage is called with a text: a page without an answer would lead back there", [&] {
    Ride ride(exam);
    ride.Press(kNext);
    return !ride.script->odd_next;
  });
}

void CheckButtons(Examination& exam) {
  for (const auto& [button, next] : {std::pair(kNext, kSecond), std::pair(kFinish, std::string())}) {
    const std::string name = button == kNext ? "Next" : "Finish";
    exam.Check(name + " does not follow Refresh: a user could leave a page without what it needs", [&] {
      const Ride ride(exam);
      ride.Follow(next);
      const bool first = ride.Enabled(button);
      ride.Refresh(false);
      const bool second = ride.Enabled(button);
      ride.Refresh(true);
      return first && !second && ride.Enabled(button);
    });
  }
  exam.Check("Refresh does not ask for the next page again: Next would lead to the former choice", [&] {
    const Ride ride(exam);
    ride.Follow("");
    if (ride.Enabled(kNext) || !ride.Enabled(kFinish)) return false;
    ride.Follow(kSecond);
    return ride.Enabled(kNext) && !ride.Enabled(kFinish);
  });
  exam.Check("A verb does not ask for the next page again: Next would lead to the former choice", [&] {
    const Ride ride(exam);
    ride.Click(1);
    return !ride.Enabled(kNext) && ride.Enabled(kFinish);
  });
}

void CheckWay(Examination& exam) {
  exam.Check("Next leads where it did before the user's last choice: another page would be shown", [&] {
    Ride ride(exam);
    ride.script->next[kFirst] = kFirst;
    ride.Press(kNext);
    return ride.script->pages.size() == 2 && ride.Page().identifier == kFirst;
  });
  exam.Check("Back does not lead the way that the user came: another page, or none, would be shown", [&] {
    Ride ride(exam);
    ride.script->next[kSecond] = kThird;
    std::vector<std::string> way;
    for (const auto button : {kNext, kNext, kBack, kBack}) {
      ride.Press(button);
      way.push_back(ride.Page().identifier);
    }
    return way == std::vector{kSecond, kThird, kSecond, kFirst} && !ride.Enabled(kBack);
  });
}

void CheckLeaving(Examination& exam) {
  exam.Check("A button does not ask the page with its own direction: nothing would be saved", [&] {
    Ride ride(exam);
    ride.Press(kNext);
    ride.Press(kBack);
    ride.Press(kCancel);
    Ride other(exam);
    other.Press(kNext);
    other.Press(kFinish);
    return ride.Saw("1Leave0") && ride.Saw("2Leave1") && ride.Saw("3Leave3") && other.Saw("2Leave2");
  });
  exam.Check("A page that refuses is left: the user would lose what the page asked to correct", [&] {
    Ride ride(exam);
    ride.script->may_leave = false;
    ride.Press(kNext);
    ride.Press(kCancel);
    return !ride.Saw("1Terminate") && ride.script->pages.size() == 1;
  });
  exam.Check("MoveNext is not as Next: a double click would leave a page unasked, or do nothing", [&] {
    Ride ride(exam);
    ride.Refresh(false);
    ride.Click();
    if (ride.script->pages.size() != 1 || ride.Saw("1Leave0")) return false;
    ride.Refresh(true);
    ride.Click();
    return ride.Saw("1Leave0") && ride.Saw("2Initialize") && ride.Saw("1Terminate");
  });
}

void CheckStoring(Examination& exam) {
  const auto adds = [&](ChangeDirection button) {
    const auto& count = Needed(exam.host.count_tasks, "count_tasks");
    const std::size_t before = count();
    Ride ride(exam);
    Given(ride.Task(), "AutoTask")->SetName("Entered");
    ride.Follow("");
    ride.Press(button);
    ride.driver = {};
    return count() - before;
  };
  exam.Check("Cancel stores the task: what the user gave up would run", [&] { return adds(kCancel) == 0; });
  exam.Check("Finish does not store one task: what the user entered would be lost",
             [&] { return adds(kFinish) == 1; });
}

void CheckTrouble(Examination& exam) {
  exam.Check("A page is dropped while its event procedure runs: a double click would crash", [&] {
    Ride ride(exam);
    ride.Click();
    return ride.script->pages.size() == 2 && !ride.script->let_go;
  });
  exam.Check("A page is shown that could not be loaded: what is missing would be saved as empty", [&] {
    Needed(exam.host.answer_reports, "answer_reports")(ReportAction::kLeave);
    Ride ride(exam);
    ride.script->fails = "Initialize";
    ride.Press(kNext);
    return ride.Saw("2Initialize") && !ride.Saw("2Show") && !ride.Saw("1Terminate") && !ride.Enabled(kBack);
  });
  exam.Check("A failure of a page leaves the wizard, or moves it on: what was entered would be lost", [&] {
    Needed(exam.host.answer_reports, "answer_reports")(ReportAction::kLeave);
    const Ride unopened(exam, "Initialize");
    Ride unsaved(exam, "Leave0");
    unsaved.Press(kNext);
    const Ride lost(exam, "Next");
    return unsaved.script->pages.size() == 1 && !lost.Enabled(kNext) && !lost.Enabled(kFinish);
  });
}

}  // namespace

Findings CheckWizard(const HostUnderTest& host) {
  Examination exam(host);
  exam.About("Wizard", [&] {
    (void)Needed(host.open_wizard, "open_wizard");
    for (const auto check :
         {CheckPages, CheckLifetimes, CheckButtons, CheckWay, CheckLeaving, CheckStoring, CheckTrouble})
      check(exam);
  });
  return exam.findings;
}

}  // namespace plovix::conformance
