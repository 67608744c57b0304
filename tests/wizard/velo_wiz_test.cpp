// The wizard without a toolkit: navigation, buttons and saving, with pages that follow the test's script and
// with the real ones; faults and a random walk on the whole of it.
#include <plovix/framework/page_controls.h>

#include "tests/support/walker.h"

namespace plovix {
namespace {

using namespace testing_support;
using Texts = std::vector<std::string>;

// What the scripted pages do; shared by all of them, whichever was made last.
struct Script {
  std::function<void()> initialize = [] {};
  std::function<std::string(const std::string& text)> next = [](const std::string& text) { return text; };
  std::function<bool()> leave = [] { return true; };
  std::function<void(WizardHost&)> go = [](WizardHost& host) { host.MoveNext(); };
  int alive = 0, made = 0, terminated = 0;
  int alive_behind_go = 0;  // how many pages lived when `go` had returned
};

constexpr auto kScripted =
    MakeDesign("Scripted", {{"txtNext", Kind::kTextBox}, {"cmdGo", Kind::kCommandButton}}, {"txtNext cmdGo"});

class ScriptedPage final : public PageWith<kScripted, CommonPage> {
 public:
  explicit ScriptedPage(Script& script) : script_(script) {
    ++script_.alive;
    ++script_.made;
    txtNext.On(Event::kChange, [this] { RefreshWizard(); });
    control<"cmdGo">().On(Event::kClick, [this] {
      script_.go(*Wizard);
      script_.alive_behind_go = script_.alive;
    });
  }
  ~ScriptedPage() override {
    --script_.alive;
    if (!Wizard) ++script_.terminated;
  }
  void IWizardPage_GetNextPage(std::string& next) override { next = script_.next(txtNext.Text()); }

 private:
  Outcome RetrieveValues() override { return script_.initialize(), Outcome::kCompleted; }
  bool Validate() override { return script_.leave(); }
  Outcome SaveValues() override { return Outcome::kCompleted; }
  std::optional<bool> CanContinue() override { return txtNext.Text() != "stop"; }

  Script& script_;
  TextBox& txtNext = control<"txtNext">();
};

class VeloWizTest : public testing::Test {
 protected:
  VeloWizTest() {
    for (const char* name : {"A", "B"}) {
      const auto make = [this] { return std::make_shared<ScriptedPage>(script); };
      scene.registry.Add(std::make_shared<FactoryOf>(name, make));
    }
    Make({});
  }
  void Make(const TaskRecord& task) { wizard = std::make_unique<VeloWiz>(scene.Parts(), task); }
  Control& At(std::string_view name) { return wizard->Controls()->Get(name); }
  void Type(std::string_view name, const std::string& text) { wizard->User().Type(At(name), text); }
  // The current page and the enabled buttons: Back, Next, Finish, Cancel.
  std::string Where() {
    const auto [back, next, finish, cancel] = wizard->Buttons();
    return wizard->Identifier() + " " + (back ? "B" : "-") + (next ? "N" : "-") + (finish ? "F" : "-") +
           (cancel ? "C" : "-");
  }

  Scene scene;
  MemoryStorage& storage = scene.storage;
  Script script;
  std::unique_ptr<VeloWiz> wizard;
};

constexpr const char* kType = "Plovix.AutoTaskType";

// A schedule starts on the day on which it was stored first, and takes its start along when it goes.
TEST_F(VeloWizTest, AScheduleAndItsStartAreStoredTogether) {
  TaskRecord task;
  task.name = task.description = "Report";
  task.allow_automation_manager = true;
  task.recurrence.emplace();
  for (const bool scheduled : {true, false}) {
    Make(task);
    wizard->Open(scheduled ? "Plovix.Actions" : "Plovix.Details");
    if (!scheduled) wizard->User().Toggle(At("chkAutoMan"));
    EXPECT_NE(wizard->Next(), scheduled);
    EXPECT_TRUE(wizard->Finish());
    task = wizard->Saved();
    EXPECT_EQ(storage.List(), std::vector{task});
    EXPECT_EQ(task.recurrence.has_value(), scheduled);
    EXPECT_EQ(
        task.schedule_start,
        scheduled ? std::optional(std::chrono::floor<std::chrono::days>(scene.state.Now())) : std::nullopt);
    EXPECT_FALSE(wizard->Finish() || wizard->Cancel() || wizard->Back() || wizard->Next());
  }
}

TEST_F(VeloWizTest, BackMakesAFreshPageOfTheWayThatWasTaken) {
  wizard->Open("A");
  EXPECT_EQ(Where(), "A --FC");  // an empty identifier ends the wizard
  Type("txtNext", "stop");       // the buttons follow the typing
  EXPECT_EQ(Where(), "A ---C");
  for (const char* next : {"B", "A"}) {
    Type("txtNext", next);
    wizard->Next();
  }
  EXPECT_EQ(Where(), "A B-FC");
  wizard->Back();
  script.initialize = [] { throw Failure(5, "no"); };  // a way back that fails stays open
  EXPECT_TRUE(wizard->Back());
  EXPECT_EQ(Where(), "B B-FC");
  script.initialize = [] {};
  wizard->Back();
  EXPECT_EQ(Where(), "A --FC");
  EXPECT_FALSE(wizard->Back());
  EXPECT_EQ(std::pair(script.made, script.alive), std::pair(6, 1));
  EXPECT_TRUE(wizard->HasChanges()) << "typed on pages that are gone";
  wizard.reset();
  EXPECT_EQ(std::pair(script.terminated, script.alive), std::pair(6, 0));
}

TEST_F(VeloWizTest, MoveNextIsNextAndTheReplacedPageLivesOn) {
  wizard->Open("A");
  wizard->User().Press(At("cmdGo"));  // Next is not enabled: nothing happens
  EXPECT_EQ(Where(), "A --FC");
  Type("txtNext", "B");
  wizard->User().Press(At("cmdGo"));
  EXPECT_EQ(Where(), "B B-FC");
  EXPECT_EQ(std::pair(script.alive_behind_go, script.alive), std::pair(2, 1));
  // A verb asks once; on the way a page that moves on is asked first, as its event may have changed the
  // answer.
  int answers = 0;
  script.next = [&](const std::string& text) { return ++answers, text; };
  Type("txtNext", "A");
  EXPECT_EQ(answers, 1);
  script.go = [this](WizardHost& host) {
    dynamic_cast<TextBox&>(At("txtNext")).SetText("");
    host.MoveNext();
  };
  wizard->User().Press(At("cmdGo"));
  EXPECT_EQ(Where(), "B B-FC");
  // A page that asks to move on while it is being left is not left twice.
  int asked = 0;
  script.leave = [&] { return !wizard->Next() && !wizard->Cancel() && ++asked > 0; };
  Type("txtNext", "A");
  EXPECT_TRUE(wizard->Next());
  EXPECT_EQ(std::pair(asked, Where()), std::pair(1, std::string("A B-FC")));
  // A page that closes the wizard lives to the end of its event procedure, too.
  script.go = [this](WizardHost&) { wizard->Cancel(); };
  wizard->User().Press(At("cmdGo"));
  EXPECT_FALSE(wizard->IsOpen());
  EXPECT_EQ(std::pair(script.alive_behind_go, script.alive), std::pair(1, 0));
}

TEST_F(VeloWizTest, TheNextPageIsAskedForAfterSaving) {
  std::string target = "Plovix.Nowhere";
  script.next = [&](const std::string&) { return target; };
  EXPECT_FALSE(wizard->Open(target));
  wizard->Open("A");
  EXPECT_TRUE(wizard->Next());  // an unknown page is told and the current one stays
  EXPECT_EQ(Where(), "A -N-C");
  EXPECT_EQ(scene.dialogs.boxes, Texts(2, "[wizard.noPage:Plovix.Nowhere]/48"));
  for (const auto& [saved, where] : {std::pair("B", "B BN-C"), std::pair("", "B B-FC")}) {
    script.leave = [&, now = saved] { return target = now, true; };
    EXPECT_TRUE(wizard->Next());  // no page follows after all: the button becomes Finish
    EXPECT_EQ(Where(), where);
  }
}

TEST_F(VeloWizTest, AFailingNextPageIsReportedOnceWhileItLasts) {
  script.next = [&](const std::string& text) -> std::string {
    if (text.starts_with("fail")) throw Failure(failure_number::kObjectNotSet, "no");
    return "B";
  };
  wizard->Open("A");
  for (const std::size_t reports : {1U, 2U}) {
    Type("txtNext", "fail");
    Type("txtNext", "fail on");
    EXPECT_EQ(Where(), "A ---C");
    ASSERT_EQ(scene.dialogs.reports.size(), reports);
    const FailureReport& report = scene.dialogs.reports.back();
    EXPECT_EQ(report.page + "." + report.procedure, "Scripted.IWizardPage_GetNextPage");
    EXPECT_EQ(std::pair(report.number, report.line), std::pair(91, 0));
    Type("txtNext", "well");
    EXPECT_EQ(Where(), "A -N-C");
  }
}

TEST_F(VeloWizTest, AFailingInitializeIsAnswered) {
  struct Row {
    std::deque<int> answers;
    const char *first, *later;  // where the wizard is after opening at B, and after going from A to B
    int made;
  };
  const std::vector<Row> rows = {
      {{2}, " ----", "A -N-C", 1},  {{7}, " ----", "A -N-C", 1},       {{1}, "B ---C", "B B--C", 1},
      {{0}, "B -N-C", "B BN-C", 2}, {{0, 0, 2}, " ----", "A -N-C", 3},
  };
  std::deque<int> answers;  // each is a failure to come
  script.next = [](const std::string&) { return "B"; };
  script.initialize = [&] { answers.empty() ? void() : throw Failure(5, "no"); };
  scene.dialogs.on_report = [&](const FailureReport&) {
    const int answer = answers.front();
    answers.pop_front();
    return answer;
  };
  for (const Row& row : rows) {
    for (const bool first : {true, false}) {
      Make({});
      if (!first) wizard->Open("A");
      script.made = 0;
      answers = row.answers;
      first ? wizard->Open("B") : wizard->Next();
      EXPECT_EQ(Where(), first ? row.first : row.later);
      EXPECT_EQ(std::pair(script.made, script.alive), std::pair(row.made, wizard->IsOpen() ? 1 : 0));
    }
  }
  EXPECT_EQ(scene.dialogs.reports.back().procedure, "IWizardPage_Initialize");
}

// A task begun in language-tag mode keeps its tags when the mode is off; what an empty box leaves is stored
// as no category.
TEST_F(VeloWizTest, ANewTaskIsWhatTheModeSays) {
  for (const bool marker : {true, false}) {
    scene.state.language_tag_mode = true;
    scene.state.marker_file = marker;
    scene.state.tag_texts["t"] = "Text";
    Make({});
    EXPECT_FALSE(wizard->HasChanges());
    wizard->Open("Plovix.Details");
    scene.dialogs.chosen_tag = "t";
    for (const char* text : {"Name", "Description"}) {
      if (marker) Type(std::string("txt") + text, "Text");
      if (!marker) wizard->User().Press(At(std::string("cmd") + text + "LangTag"));
    }
    wizard->Next();
    EXPECT_TRUE(wizard->Finish());
    scene.state.language_tag_mode = false;
    const TaskRecord saved = wizard->Saved();
    EXPECT_EQ(saved.uses_language_tags, !marker);
    EXPECT_TRUE(saved.categories.empty());
    Make(saved);
    wizard->Open("Plovix.Details");
    EXPECT_EQ(dynamic_cast<TextBox&>(At("txtName")).Text(), "Text");
  }
}

TEST_F(VeloWizTest, AFailedSaveKeepsEverythingOpen) {
  wizard->Open("A");
  for (const char* text : {"B", ""}) Type("txtNext", text);
  // The time is asked for on the way to the storage.
  const auto clock = std::exchange(scene.state.clock, []() -> DateTime { throw Failure(51, "disk full"); });
  EXPECT_TRUE(wizard->Finish());
  EXPECT_EQ(scene.dialogs.boxes, Texts{"[wizard.saveFailed:disk full]/48"});
  EXPECT_TRUE(wizard->HasChanges() && storage.List().empty());
  EXPECT_EQ(Where(), "A --FC");
  scene.state.clock = clock;
  EXPECT_TRUE(wizard->Finish() && storage.List().size() == 1);
}

// From opening a stored task to Finish; gives the number of host calls and whether it came to the end.
std::pair<int, bool> WalkWithFault(const State& state, int n, Times times, int answer) {
  Scene scene;
  Furnish(scene);
  const TaskRecord stored = scene.storage.Save(RecordOf(state), {});
  AnswerReports(scene.dialogs, times, answer);
  VeloWiz wizard(scene.Parts(), stored, EntriesOf(scene, state));
  const Injector injector(n, times);
  wizard.Open(kType);
  for (int step = 0; step < 12 && wizard.IsOpen(); ++step) {
    for (const char* box : {"txtName", "txtDescription"})
      if (Control* found = wizard.Controls()->Find(box)) wizard.User().Type(*found, "9");
    if (!wizard.Next()) wizard.Finish();
  }
  const bool finished = wizard.End() == WizardEnd::kFinished;
  EXPECT_TRUE(!wizard.IsOpen() || wizard.Cancel());
  EXPECT_EQ(scene.storage.List(), std::vector{finished ? wizard.Saved() : stored});
  return {static_cast<int>(injector.calls.size()), finished};
}

TEST(WizardFaultSweep, NothingHalfSavedReachesTheStorage) {
  int finished = 0;
  for (const State& state : kStates) {
    const auto [calls, ended] = WalkWithFault(state, 0, Times::kOnce, 2);
    finished += ended ? 1 : 0;
    for (int n = 1; n <= calls && !testing::Test::HasFailure(); n += PLOVIX_WALK_DIVISOR) {
      for (const Times times : {Times::kOnce, Times::kTwice, Times::kForEver}) {
        for (const int answer : {0, 1, 2}) {
          SCOPED_TRACE(testing::Message() << state.name << ", call " << n << ", answer " << answer);
          WalkWithFault(state, n, times, answer);
        }
      }
    }
  }
  EXPECT_GE(finished, 4);
}

TEST(Walk, ThroughTheWizard) {
  Scene scene;
  Walker(scene).Walk(100'000);
}

}  // namespace
}  // namespace plovix
