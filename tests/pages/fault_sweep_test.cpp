// The fault sweep. Every host call that a page makes, in every operation and for every verb of the user,
// fails once, twice and for ever, under every answer of the error reporter, also while the host ends the
// page. It knows no page: what is registered is swept.
#include <set>

#include "tests/support/faults.h"
#include "tests/support/task_parts.h"

namespace plovix {
namespace {

using namespace testing_support;
using Texts = std::vector<std::string>;

// Something to do with a page; gives what CanChangePage answered.
struct Operation {
  std::string name;
  std::function<bool(Bench&)> run;
};

const std::string kInitialize = "IWizardPage_Initialize";
const std::string kInitializeAndLeave = kInitialize + " and leave";
const std::string kLeave = "IWizardPage_CanChangePage";
constexpr int kEndsThePage = 3;  // an answer of the test's own: ends the page and retries

const Act kActs[] = {
    {Verb::kType, "7"},   {Verb::kType},     {Verb::kClick},
    {Verb::kDoubleClick}, {Verb::kDropDown}, {Verb::kPick},
    {Verb::kEnter},       {Verb::kLeave},    {Verb::kSet, "", 0, DateTime{std::chrono::hours{2}}}};

std::vector<Operation> OperationsOf(const Form& form) {
  const auto operation = [](std::string name, auto work) {
    return Operation{std::move(name), [work](Bench& bench) { return work(bench), false; }};
  };
  std::vector<Operation> operations = {
      operation(kInitialize, [](Bench& bench) { bench.Initialize(); }),
      {kInitializeAndLeave, [](Bench& bench) { return bench.Initialize().Leave(ChangeDirection::kNext); }},
      operation("IWizardPage_Title", [](Bench& bench) { (void)bench.page->IWizardPage_Title(); }),
      operation("IWizardPage_Description", [](Bench& bench) { (void)bench.page->IWizardPage_Description(); }),
      operation("IWizardPage_GetNextPage", [](Bench& bench) { (void)bench.Next(); }),
      operation("IWizardPage_Terminate", [](Bench& bench) { bench.page->IWizardPage_Terminate(); }),
      operation("UserControl_Show", [](Bench& bench) { bench.user.Show(bench.Controls()); }),
  };
  for (std::int32_t code = 0; code < 4; ++code) {
    operations.push_back({kLeave + " " + std::to_string(code),
                          [code](Bench& bench) { return bench.Leave(static_cast<ChangeDirection>(code)); }});
  }
  for (std::size_t i = 0; i < form.Count(); ++i) {
    for (const Act& act : kActs) {
      const std::string name = std::string(form.At(i).Name()) + " act " + std::to_string(&act - kActs);
      operations.push_back(operation(name, [i, act](Bench& bench) {
        Control& control = bench.Controls().At(i);
        if (act.verb == Verb::kLeave) bench.user.Enter(control);
        UserHand(bench.user).Do(control, act);
      }));
    }
    if (form.At(i).GetKind() != Kind::kHostSlot) continue;
    operations.push_back(operation("context", [](Bench& bench) {  // asked for twice
      for (int time = 0; time < 2; ++time) (void)bench.ActionRows().OfferedKinds();
    }));
  }
  return operations;
}

struct Run {
  Texts calls, delivered, boxes;
  std::vector<FailureReport> reports;
  std::vector<Failure> escapes;
  bool answer = false;
  Snapshot before, after;
};

class Sweep {
 public:
  explicit Sweep(std::string identifier)
      : identifier_(std::move(identifier)), page_(identifier_.substr(identifier_.find('.') + 1)) {}

  void All() {
    for (const Operation& operation : OperationsOf(controls_)) {
      for (const State& state : kStates) {
        context_ = identifier_ + ", " + operation.name + ", " + state.name;
        const Run plain = Do(state, operation, 0, Times::kOnce, 2);
        const bool clean = plain.reports.empty() && plain.escapes.empty();
        // A page of the schedule does not come before there is one, nor a query before a data object.
        if (!clean && !(state.recurrence && state.data_object)) continue;
        Expect(clean, "fails without a fault");
        Fail(state, operation, plain);
      }
    }
    EXPECT_TRUE(procedures_.contains("SaveValues")) << page_;
  }

 private:
  void Expect(bool held, const std::string& what) {
    if (!held && ++wrong_ <= 10) ADD_FAILURE() << context_ << ": " << what;
  }

  // `n` 0: without a fault.
  Run Do(const State& state, const Operation& operation, int n, Times times, int answer) {
    Scene scene;
    scene.state.language_tag_mode = state.application_tags;
    Furnish(scene);
    TaskRecord record = RecordOf(state);
    record.id = record.owner.empty() ? 0 : 7;
    record.short_description = "Short";
    record.query = "Query";
    record.permissions = {{"eve", false, true, false, true, false}};
    record.skip_row_selection = record.record_mode == record_mode::kQueryResults;
    Bench bench(scene, identifier_, record, EntriesOf(scene, state));
    const bool begins = operation.name.starts_with(kInitialize);
    if (!begins) bench.Initialize();
    if (!begins && state.typed) EnterSomething(bench);
    Run run;
    run.before = Everything(bench);
    const bool ends = answer == kEndsThePage;
    AnswerReports(scene.dialogs, times, ends ? 0 : answer);
    {
      Injector injector(n, times);
      if (ends) {
        injector.at_fault = [&bench] {
          bench.host = std::make_shared<RecordingHost>();  // nobody but the page holds the former one
          bench.page->IWizardPage_Terminate();
        };
      }
      try {
        run.answer = operation.run(bench);
      } catch (const Failure& failure) {
        run.escapes.push_back(failure);
      }
      run.calls = std::move(injector.calls);
      run.delivered = std::move(injector.delivered);
    }
    for (const Failure& failure : bench.escaped) run.escapes.push_back(failure);
    run.after = Everything(bench);
    run.boxes = scene.dialogs.boxes;
    run.reports = scene.dialogs.reports;
    if (operation.name == kLeave + " 3")
      Expect(run.answer && run.before == run.after, "Cancel wrote or refused");
    return run;
  }

  // Each failure delivered is told exactly once: by a report from where it happened, or as the exception.
  void CheckReports(const Run& run) {
    Texts told;
    for (const FailureReport& report : run.reports) {
      const bool injected = report.description.starts_with("injected ");
      if (injected) told.push_back(report.description);
      procedures_.insert(report.procedure);
      const std::string where = report.page + "." + report.procedure + ":" + std::to_string(report.line);
      Expect(report.module == "Plovix" && report.page == page_, "reported under " + where);
      const std::string object = report.procedure.substr(0, report.procedure.find('_'));
      Expect(object == report.procedure || object == "IWizardPage" || object == "UserControl" ||
                 controls_.Find(object),
             where + " is no procedure of the page");
      // A skipped statement may leave the next one without its object or its entry.
      Expect(report.number == 91 || report.number == 380 || (injected && report.number == 5),
             where + " reported " + std::to_string(report.number));
    }
    for (const Failure& failure : run.escapes) told.push_back(failure.Description());
    auto delivered = run.delivered;
    std::ranges::sort(delivered);
    std::ranges::sort(told);
    Expect(!told.empty() && delivered == told,
           std::to_string(delivered.size()) + " failures, told of " + std::to_string(told.size()));
  }

  void CheckRetried(const Run& plain, const Run& run, Times times) {
    if (times != Times::kForEver) {
      Expect(run.escapes.empty() && run.answer == plain.answer && run.boxes == plain.boxes &&
                 run.after == plain.after,
             "retrying did not end as without the fault");
      return;
    }
    Expect(run.reports.size() > kRetriesWhileItLasts, "a retried statement was not repeated");
    for (std::size_t i = 1; i <= kRetriesWhileItLasts && i < run.reports.size(); ++i) {
      Expect(run.reports[i].line == run.reports[0].line, "retrying repeated another statement");
    }
  }

  // What could not be read, and what was to follow from it, is not written.
  void CheckKept(const Run& plain, const Run& run) {
    const std::string lost = Lost(run.before.task, plain.after.task, run.after.task);
    Expect(lost.empty(), "stored neither what was there nor what is shown:" + lost);
    for (const auto& [key, value] : run.before.store) {
      const auto now = run.after.store.find(key);
      Expect(
          now != run.after.store.end() && (now->second == value || now->second == plain.after.store.at(key)),
          "the store lost " + key);
    }
  }

  // A host that ends the page and wants a retry gets what was asked for, and no other failure.
  void CheckEnded(const Run& plain, const Run& run) {
    Expect(run.escapes.empty() && run.reports.size() == 1, "the page had not what it needed to retry");
    Expect(run.answer == plain.answer && run.after.task == plain.after.task &&
               run.after.store == plain.after.store,
           "an ended page did not end its work");
  }

  // In a procedure that was left no later line runs: while every call fails, such a line would report.
  void CheckLeft(const Operation& operation, const Run& run) {
    const FailureReport& first = run.reports.front();
    for (const FailureReport& report : run.reports) {
      Expect(report.procedure != first.procedure || report.line <= first.line, "went on after it was left");
    }
    const bool decides = first.procedure == "SaveValues" || first.procedure == kLeave ||
                         first.procedure.starts_with("Validate");
    if (decides && operation.name.starts_with(kLeave)) {
      Expect(!run.answer, "the page may be left although " + first.procedure + " was left");
    }
  }

  void Fail(const State& state, const Operation& operation, const Run& plain) {
    for (int n = 1; n <= static_cast<int>(plain.calls.size()); n += PLOVIX_WALK_DIVISOR) {
      for (const Times times : {Times::kOnce, Times::kTwice, Times::kForEver, Times::kMember}) {
        for (const int answer : {0, 1, 2, kEndsThePage, 7}) {
          if (times == Times::kTwice && answer != 0) continue;   // only a repetition fails again
          if (times == Times::kMember && answer != 1) continue;  // would never end
          if (times != Times::kOnce && answer == kEndsThePage) continue;
          if (operation.name == kInitializeAndLeave && answer != 1 && answer != 2) continue;
          context_ = identifier_ + ", " + operation.name + ", " + state.name + ", call " + std::to_string(n) +
                     " (" + plain.calls[static_cast<std::size_t>(n) - 1] + ") fails " +
                     std::to_string(static_cast<int>(times)) + ", answer " + std::to_string(answer);
          const Run run = Do(state, operation, n, times, answer);
          CheckReports(run);
          if (run.reports.empty()) continue;  // no handler: the failure ended the operation
          if (answer == 1 || answer == 2) CheckKept(plain, run);
          if (answer == kEndsThePage) CheckEnded(plain, run);
          if (operation.name == kInitializeAndLeave) continue;
          if (answer == 0) CheckRetried(plain, run, times);
          if (answer == 2 || answer == 7) CheckLeft(operation, run);
        }
      }
    }
  }

  std::string identifier_, page_, context_;
  std::shared_ptr<WizardPage> bare_ = Scene().registry.Create(identifier_);
  Form& controls_ = bare_->Controls();
  std::set<std::string> procedures_;  // that reported at least once
  int wrong_ = 0;
};

// One test for each page, so that a page can be swept alone.
class FaultSweep : public testing::TestWithParam<std::string> {};
TEST_P(FaultSweep, EveryHostCallOfEveryProcedure) {
  Sweep(GetParam()).All();
}
INSTANTIATE_TEST_SUITE_P(Pages, FaultSweep, testing::ValuesIn(Scene().registry.Identifiers()),
                         [](const auto& page) { return page.param.substr(page.param.find('.') + 1); });

}  // namespace
}  // namespace plovix
