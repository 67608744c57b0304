// The fault sweep. Every host call that a page makes, in every operation and for every verb of the user,
// fails once, twice and for ever, under every answer of the error reporter. It knows no page: what is
// registered is swept.
#include <set>

#include "tests/support/faults.h"
#include "tests/support/page_sources.h"
#include "tests/support/snapshot.h"

namespace plovix {
namespace {

using namespace testing_support;

// Something to do with a page. `answer` is what CanChangePage said.
struct Operation {
  std::string name;
  bool initialized = true;  // the page is loaded before it, without failures
  std::function<void(Bench&, bool& answer)> run = {};
};

void PlayUser(Bench& bench, Control& control, int verb) {
  User& user = bench.user;
  switch (verb) {
    case 0:
      user.Type(control, "7");
      break;
    case 1:
      user.Type(control, "");
      break;
    case 2:
      user.Toggle(control);
      break;
    case 3:
      user.Click(control);
      break;
    case 4:
      user.DoubleClick(control);
      break;
    case 5:
      user.DropDown(control);
      break;
    case 6:
      user.Pick(control, 0);
      break;
    case 7:
      user.Set(control, DateTime{std::chrono::seconds{7200}});
      break;
    case 8:
      user.Leave(control);
      break;
    default:  // an embedded action list asks for its context, twice
      if (control.GetKind() == Kind::kHostSlot) {
        (void)bench.ActionRows().OfferedKinds();
        (void)bench.ActionRows().OfferedKinds();
      }
  }
}
constexpr int kVerbs = 10;

std::vector<Operation> OperationsOf(const WizardPage& page, const Form& form) {
  std::vector<Operation> operations = {
      {"IWizardPage_Initialize", false, [](Bench& bench, bool&) { bench.Initialize(); }},
      {"IWizardPage_Title", true, [](Bench& bench, bool&) { (void)bench.page->IWizardPage_Title(); }},
      {"IWizardPage_Description", true,
       [](Bench& bench, bool&) { (void)bench.page->IWizardPage_Description(); }},
      {"IWizardPage_GetNextPage", true, [](Bench& bench, bool&) { (void)bench.Next(); }},
      {"IWizardPage_Terminate", true, [](Bench& bench, bool&) { bench.page->IWizardPage_Terminate(); }},
      {"UserControl_Show", true, [](Bench& bench, bool&) { bench.user.Show(bench.Controls()); }},
  };
  for (std::int32_t code = 0; code < 4; ++code) {
    operations.push_back(
        {"IWizardPage_CanChangePage " + std::to_string(code), true,
         [code](Bench& bench, bool& answer) { answer = bench.Leave(static_cast<ChangeDirection>(code)); }});
  }
  for (std::size_t i = 0; i < form.Count(); ++i) {
    for (int verb = 0; verb < kVerbs; ++verb) {
      operations.push_back(
          {std::string(page.PageName()) + " " + std::string(form.At(i).Name()) + " verb " +
               std::to_string(verb),
           true, [i, verb](Bench& bench, bool&) { PlayUser(bench, bench.Controls().At(i), verb); }});
    }
  }
  return operations;
}

constexpr std::string_view kCancelling = "IWizardPage_CanChangePage 3";

// What a user enters before the operation, so that saving has something to save.
void TypeIn(Bench& bench) {
  for (std::size_t i = 0; i < bench.Controls().Count(); ++i) {
    Control& control = bench.Controls().At(i);
    if (control.GetKind() == Kind::kTextBox) PlayUser(bench, control, 0);
    if (control.GetKind() == Kind::kOptionButton) PlayUser(bench, control, 3);
    if (control.GetKind() == Kind::kHostSlot) bench.ActionRows().Append(LogAction("entered"));
  }
}

struct Escape {
  int number;
  std::string description, place;
};

struct Run {
  std::vector<std::string> calls, delivered, boxes;
  std::vector<FailureReport> reports;
  std::vector<Escape> escapes;
  bool answer = false;
  Snapshot before, after;
  TaskRecord task;
};

class Sweep {
 public:
  explicit Sweep(std::string identifier)
      : identifier_(std::move(identifier)), page_(identifier_.substr(identifier_.find('.') + 1)) {}
  void All();

 private:
  // Where each call of the fault-free run stands: its procedure and line, empty without a handler.
  using Places = std::vector<std::pair<std::string, int>>;
  Run Do(const State& state, const Operation& operation, int n, Times times, int answer);
  void Fail(const State& state, const Operation& operation, const Run& plain);
  void Check(const Operation& operation, const Run& plain, const Places& places, const Run& run, int n,
             Times times, int answer);
  void CheckReports(const Operation& operation, const Run& run);
  void CheckCancel(const Operation& operation, const Run& run);
  void CheckLeft(const Operation& operation, const Run& run);
  void CheckContinued(const Run& plain, const Places& places, const Run& run, int n);
  void Expect(bool held, const std::string& what);

  std::string identifier_, page_, context_;
  PageSources sources_;
  std::set<std::string> procedures_;  // that reported at least once
  int runs_ = 0, wrong_ = 0;
};

void Sweep::Expect(bool held, const std::string& what) {
  if (!held && ++wrong_ <= 10) ADD_FAILURE() << context_ << ": " << what;
}

// `n` 0: without a fault.
Run Sweep::Do(const State& state, const Operation& operation, int n, Times times, int answer) {
  ++runs_;
  Scene scene;
  scene.state.language_tag_mode = state.application_tags;
  Bench bench(scene, identifier_, RecordOf(state), EntriesOf(state));
  if (operation.initialized) bench.Initialize();
  if (operation.initialized && state.typed) TypeIn(bench);
  Run run;
  // Snapshots are dear: they are taken where they are compared.
  const bool compared = n == 0 || answer == 0 || operation.name == kCancelling;
  if (compared) run.before = Everything(bench);
  scene.dialogs.boxes.clear();
  int retries = 0;
  scene.dialogs.on_report = [&](const FailureReport&) {
    const bool enough = answer == 0 && times == Times::kForEver && ++retries > kRetriesWhileItLasts;
    return enough ? 2 : answer;
  };
  {
    Injector injector(n, times);
    try {
      operation.run(bench, run.answer);
    } catch (const Failure& failure) {
      run.escapes.push_back({failure.Number(), failure.Description(), operation.name});
    }
    run.calls = std::move(injector.calls);
    run.delivered = std::move(injector.delivered);
  }
  for (const auto& [failure, procedure] : bench.escaped) {
    run.escapes.push_back({failure.Number(), failure.Description(), procedure});
  }
  if (compared) run.after = Everything(bench);
  run.task = bench.task->Record();
  run.boxes = scene.dialogs.boxes;
  run.reports = scene.dialogs.reports;
  return run;
}

// Each failure delivered is told exactly once: by a report from where it happened, or as the exception.
void Sweep::CheckReports(const Operation& operation, const Run& run) {
  std::vector<std::string> told;
  for (const FailureReport& report : run.reports) {
    const bool injected = report.description.starts_with("injected ");
    if (injected) told.push_back(report.description);
    procedures_.insert(report.procedure);
    const std::string where = report.page + "." + report.procedure + ":" + std::to_string(report.line);
    Expect(report.module == "Plovix" && report.page == page_,
           "reported under " + report.module + " " + where);
    Expect(sources_.Holds(page_, report.procedure, report.line), where + " is no line of that procedure");
    // A skipped statement may leave the next one without its object or its entry.
    Expect(report.number == 5 || report.number == 91 || report.number == 380,
           where + " reported " + std::to_string(report.number));
    Expect(injected || report.number != 5, where + " reported what was not injected");
  }
  for (const Escape& escape : run.escapes) {
    told.push_back(escape.description);
    Expect(escape.number == 5, escape.place + " let through " + escape.description);
    const std::string control = operation.name.substr(operation.name.find(' ') + 1);
    const std::string expected = control.substr(0, control.find(' ')) + "_";
    Expect(escape.place == operation.name || escape.place.starts_with(expected),
           "escaped from " + escape.place);
  }
  auto delivered = run.delivered;
  std::ranges::sort(delivered);
  std::ranges::sort(told);
  Expect(delivered == told,
         std::to_string(delivered.size()) + " failures, told of " + std::to_string(told.size()));
}

void Sweep::CheckCancel(const Operation& operation, const Run& run) {
  if (operation.name != kCancelling) return;
  Expect(run.answer && run.before == run.after, "Cancel wrote or refused");
}

// In a procedure that was left no later line runs: while every call fails, such a line would report.
void Sweep::CheckLeft(const Operation& operation, const Run& run) {
  const FailureReport& first = run.reports.front();
  for (const FailureReport& report : run.reports) {
    if (report.procedure != first.procedure) continue;
    Expect(report.line <= first.line, first.procedure + " went on after it was left");
  }
  const bool decides = first.procedure == "SaveValues" || first.procedure == "IWizardPage_CanChangePage" ||
                       first.procedure.starts_with("Validate");
  if (decides && operation.name.starts_with("IWizardPage_CanChangePage")) {
    Expect(!run.answer, "the page may be left although " + first.procedure + " was left");
  }
}

// After a skipped statement the procedure goes on with the next one, and nothing else is missing.
void Sweep::CheckContinued(const Run& plain, const Places& places, const Run& run, int n) {
  const auto& place = places[static_cast<std::size_t>(n) - 1];
  const std::string line = sources_.Line(page_, place.first, place.second);
  const bool decides = line.find(".If(") != std::string::npos || line.find("MsgBox(") != std::string::npos;
  if (run.reports.size() > 1 || decides) return;
  const auto next = std::find_if(places.begin() + n, places.end(), [&](const auto& p) { return p != place; });
  if (next != places.end()) {
    Expect(run.calls.size() > static_cast<std::size_t>(n), "nothing ran afterwards");
    const auto end = std::find_if(next, places.end(), [&](const auto& p) { return p.first != place.first; });
    const auto rest = std::ranges::subrange(plain.calls.begin() + (next - places.begin()),
                                            plain.calls.begin() + (end - places.begin()));
    // A statement behind an "if" may hang on what the skipped one was to give.
    const bool depends = sources_.Line(page_, next->first, next->second).find(" if (") != std::string::npos;
    const bool followed = std::ranges::count(rest, run.calls.at(static_cast<std::size_t>(n))) > 0;
    Expect(followed || rest.empty() || depends, place.first + " did not go on with a later statement");
  }
  if (place.first != "SaveValues") return;
  const auto setters = [](const std::vector<std::string>& calls, std::ptrdiff_t from) {
    std::vector<std::string> found;
    std::copy_if(calls.begin() + from, calls.end(), std::back_inserter(found),
                 [](const std::string& call) { return call.find(".Set") != std::string::npos; });
    return found;
  };
  Expect(setters(run.calls, n) == setters(plain.calls, next - places.begin()), "another setter is missing");
  int different = 0;
  const Snapshot fields = TaskFields(run.task);
  for (const auto& [name, value] : TaskFields(plain.task)) different += fields.at(name) != value ? 1 : 0;
  Expect(different <= 1, "skipping one statement changed " + std::to_string(different) + " members");
}

void Sweep::Check(const Operation& operation, const Run& plain, const Places& places, const Run& run, int n,
                  Times times, int answer) {
  Expect(!run.delivered.empty(), "nothing failed");
  CheckReports(operation, run);
  CheckCancel(operation, run);
  if (run.reports.empty()) return;  // no handler: the failure ended the operation
  if (answer == 0 && times != Times::kForEver) {
    Expect(run.escapes.empty() && run.answer == plain.answer && run.boxes == plain.boxes,
           "retrying ended otherwise");
    if (run.after != plain.after) Expect(false, "the state after retrying is not the fault-free one");
  }
  if (answer == 0 && times == Times::kForEver) {
    Expect(run.reports.size() > kRetriesWhileItLasts, "a retried statement was not repeated");
    for (std::size_t i = 1; i <= kRetriesWhileItLasts && i < run.reports.size(); ++i) {
      Expect(run.reports[i].line == run.reports[0].line, "retrying repeated another statement");
    }
  }
  if (answer == 1 && times == Times::kOnce) CheckContinued(plain, places, run, n);
  if (answer == 2 || answer == 7) CheckLeft(operation, run);
}

void Sweep::Fail(const State& state, const Operation& operation, const Run& plain) {
  Places places;
  const int calls = static_cast<int>(plain.calls.size());
  for (int n = 1; n <= calls; ++n) {
    const Run run = Do(state, operation, n, Times::kOnce, 2);
    if (run.reports.empty()) {
      places.emplace_back();
    } else {
      places.emplace_back(run.reports.front().procedure, run.reports.front().line);
    }
  }
  for (int n = 1; n <= calls; ++n) {
    for (const Times times : {Times::kOnce, Times::kTwice, Times::kForEver}) {
      for (const int answer : {0, 1, 2, 7}) {
        context_ = identifier_ + ", " + operation.name + ", " + state.name + ", call " + std::to_string(n) +
                   " (" + plain.calls[static_cast<std::size_t>(n) - 1] + ") fails " +
                   std::to_string(static_cast<int>(times)) + ", answer " + std::to_string(answer);
        Check(operation, plain, places, Do(state, operation, n, times, answer), n, times, answer);
      }
    }
  }
}

void Sweep::All() {
  const auto page = [&] {
    PageRegistry registry;
    RegisterPages(registry);
    return registry.Create(identifier_);
  }();
  for (const Operation& operation : OperationsOf(*page, page->Controls())) {
    for (const State& state : kStates) {
      const Run plain = Do(state, operation, 0, Times::kOnce, 2);
      context_ = identifier_ + ", " + operation.name + ", " + state.name;
      Expect(plain.reports.empty() && plain.escapes.empty(), "fails without a fault");
      CheckCancel(operation, plain);
      Fail(state, operation, plain);
    }
  }
  std::string names;
  for (const std::string& procedure : procedures_) names += procedure + " ";
  std::cout << page_ << ": " << runs_ << " runs; reported from " << names << "\n";
  EXPECT_TRUE(procedures_.contains("SaveValues"));
}

std::vector<std::string> Registered() {
  PageRegistry registry;
  RegisterPages(registry);
  return registry.Identifiers();
}

class FaultSweep : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Pages, FaultSweep, testing::ValuesIn(Registered()),
                         [](const auto& row) { return row.param.substr(row.param.find('.') + 1); });

TEST_P(FaultSweep, EveryHostCallOfEveryProcedure) {
  Sweep(GetParam()).All();
}

}  // namespace
}  // namespace plovix
