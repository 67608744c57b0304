// The wizard without a toolkit: navigation, buttons and saving, with the real pages and with pages that
// follow the test's script.
#include <plovix/framework/page_controls.h>

#include "tests/support/scene.h"

namespace plovix {
namespace {

using namespace testing_support;
using Texts = std::vector<std::string>;

class RecordingView final : public WizardView {
 public:
  void PageShown() override { log += "shown "; }
  void ButtonsChanged() override { ++updates; }
  void Closed(WizardEnd end) override { log += end == WizardEnd::kFinished ? "finished " : "cancelled "; }
  std::string log;
  int updates = 0;
};

// What the scripted pages do; shared by all of them, whichever was made last.
struct Script {
  std::function<void(WizardHost&)> initialize = [](WizardHost& host) { host.Refresh(true); };
  std::function<std::string(const std::string& text)> next = [](const std::string&) { return std::string(); };
  std::function<bool(ChangeDirection)> leave = [](ChangeDirection) { return true; };
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
      Script& shared = script_;
      shared.go(*Set(Wizard));
      shared.alive_behind_go = shared.alive;
    });
  }
  ~ScriptedPage() override {
    --script_.alive;
    if (!Wizard) ++script_.terminated;
  }
  void IWizardPage_GetNextPage(std::string& next) override { next = script_.next(txtNext.Text()); }

 private:
  Outcome RetrieveValues() override {
    script_.initialize(*Wizard);
    return Outcome::kCompleted;
  }
  bool Validate() override { return script_.leave(ChangeDirection::kNext); }
  Outcome SaveValues() override { return Outcome::kCompleted; }
  std::optional<bool> CanContinue() override { return txtNext.Text() != "stop"; }

  Script& script_;
  TextBox& txtNext = control<"txtNext">();
};

class VeloWizTest : public testing::Test {
 protected:
  void Make(const TaskRecord& task = {}, const Entries& entries = {}) {
    wizard = std::make_unique<VeloWiz>(scene.Parts(), task, entries);
    wizard->SetView(&view);
  }
  // A wizard on scripted pages "A" and "B".
  void MakeScripted() {
    for (const char* name : {"A", "B"}) {
      scene.registry.Register(name, [this] { return std::make_shared<ScriptedPage>(script); });
    }
    Make();
  }
  Control& At(std::string_view name) { return wizard->Controls()->Get(name); }
  void Type(std::string_view name, const std::string& text) { wizard->User().Type(At(name), text); }
  std::string Buttons() {
    const auto [back, next, finish, cancel] = wizard->Buttons();
    return std::string(back ? "B" : "-") + (next ? "N" : "-") + (finish ? "F" : "-") + (cancel ? "C" : "-");
  }

  Scene scene;
  Script script;
  RecordingView view;
  std::unique_ptr<VeloWiz> wizard;
};

constexpr const char* kType = "Plovix.AutoTaskType";

TEST_F(VeloWizTest, ARoadToTheEndIsStored) {
  Make();
  EXPECT_EQ(Buttons(), "----");
  ASSERT_TRUE(wizard->Open(kType));
  EXPECT_EQ(wizard->Title() + wizard->Description(), "[4][5]");
  EXPECT_EQ(Buttons(), "-N-C");
  wizard->User().DoubleClick(At("lblNoData"));  // chooses and moves on
  EXPECT_EQ(wizard->Identifier(), "Plovix.Details");
  EXPECT_EQ(Buttons(), "BN-C");
  EXPECT_TRUE(wizard->Next());  // enabled, but the page refuses
  EXPECT_EQ(wizard->Identifier(), "Plovix.Details");
  EXPECT_EQ(scene.dialogs.boxes, Texts{"[27]/64"});
  Type("txtName", "Nightly");
  wizard->User().Leave(At("txtName"));
  EXPECT_TRUE(wizard->Next());
  EXPECT_EQ(wizard->Identifier(), "Plovix.Actions");
  EXPECT_EQ(Buttons(), "B-FC");
  EXPECT_FALSE(wizard->Next());
  EXPECT_TRUE(scene.storage.List().empty());
  EXPECT_TRUE(wizard->Finish());
  EXPECT_FALSE(wizard->IsOpen());
  EXPECT_EQ(wizard->End(), WizardEnd::kFinished);
  ASSERT_EQ(scene.storage.List().size(), 1U);
  const TaskRecord stored = scene.storage.List()[0];
  EXPECT_EQ(stored, wizard->Saved());
  EXPECT_EQ(stored.name + "/" + stored.description, "Nightly/Nightly");
  EXPECT_EQ(stored.modified, scene.state.Now());
  EXPECT_EQ(view.log, "shown shown shown finished ");
  EXPECT_FALSE(wizard->Finish() || wizard->Cancel() || wizard->Back() || wizard->Next());
}

TEST_F(VeloWizTest, CancelLeavesTheStoredTask) {
  TaskRecord task;
  task.name = task.description = "Kept";
  task = scene.storage.Save(task, {});
  Make(task);
  wizard->Open(kType);
  EXPECT_FALSE(wizard->HasChanges());
  wizard->Next();
  Type("txtName", "Changed");
  EXPECT_TRUE(wizard->HasChanges());
  wizard->Next();
  EXPECT_EQ(wizard->Task().Record().name, "Changed");
  EXPECT_TRUE(wizard->Cancel());
  EXPECT_EQ(view.log, "shown shown shown cancelled ");
  EXPECT_EQ(scene.storage.List(), std::vector{task});
}

TEST_F(VeloWizTest, BackMakesAFreshPageOfTheWayThatWasTaken) {
  MakeScripted();
  script.next = [](const std::string& text) { return text; };
  wizard->Open("A");
  EXPECT_EQ(Buttons(), "--FC");  // an empty identifier ends the wizard
  Type("txtNext", "B");          // the buttons follow the typing
  EXPECT_EQ(Buttons(), "-N-C");
  Type("txtNext", "stop");
  EXPECT_EQ(Buttons(), "---C");
  EXPECT_FALSE(wizard->CanContinue());
  Type("txtNext", "B");
  wizard->Next();
  Type("txtNext", "A");
  wizard->Next();
  EXPECT_EQ(wizard->Identifier() + Buttons(), "AB-FC");
  EXPECT_EQ(wizard->Refreshes(), 2);
  wizard->Back();
  EXPECT_EQ(wizard->Identifier() + Buttons(), "BB-FC");
  wizard->Back();
  EXPECT_EQ(wizard->Identifier() + Buttons(), "A--FC");
  EXPECT_FALSE(wizard->Back());
  EXPECT_EQ(script.made, 5);
  EXPECT_EQ(script.alive, 1);
  EXPECT_TRUE(wizard->HasChanges()) << "typed on pages that are gone";
  wizard.reset();
  EXPECT_EQ(script.alive, 0);
  EXPECT_EQ(script.terminated, 5);
}

TEST_F(VeloWizTest, MoveNextIsNextAndTheReplacedPageLivesOn) {
  MakeScripted();
  script.next = [](const std::string& text) { return text; };
  wizard->Open("A");
  wizard->User().Press(At("cmdGo"));  // Next is not enabled: nothing happens
  EXPECT_EQ(wizard->Identifier(), "A");
  Type("txtNext", "B");
  wizard->User().Press(At("cmdGo"));
  EXPECT_EQ(wizard->Identifier(), "B");
  EXPECT_EQ(std::pair(script.alive_behind_go, script.alive), std::pair(2, 1));
  EXPECT_TRUE(scene.dialogs.reports.empty());
  // A page that asks to move on while it is being left is not left twice.
  int asked = 0;
  script.leave = [&](ChangeDirection) {
    wizard->Next();
    wizard->Cancel();
    return ++asked > 0;
  };
  Type("txtNext", "A");
  EXPECT_TRUE(wizard->Next());
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(wizard->Identifier(), "A");
  // A page that closes the wizard lives to the end of its event procedure, too.
  script.go = [this](WizardHost&) { wizard->Cancel(); };
  wizard->User().Press(At("cmdGo"));
  EXPECT_FALSE(wizard->IsOpen());
  EXPECT_EQ(std::pair(script.alive_behind_go, script.alive), std::pair(1, 0));
}

TEST_F(VeloWizTest, TheNextPageIsAskedForAfterSaving) {
  MakeScripted();
  std::string target = "A";
  script.next = [&](const std::string&) { return target; };
  script.leave = [&](ChangeDirection) {
    target = target == "A" ? "B" : "";
    return true;
  };
  wizard->Open("A");
  EXPECT_TRUE(wizard->Next());
  EXPECT_EQ(wizard->Identifier(), "B");
  EXPECT_TRUE(wizard->Next());  // no page follows after all: the button becomes Finish
  EXPECT_EQ(wizard->Identifier() + Buttons(), "BB-FC");
}

TEST_F(VeloWizTest, AWayBackThatFailsStaysOpen) {
  MakeScripted();
  script.next = [](const std::string&) { return "B"; };
  wizard->Open("A");
  wizard->Next();
  const auto initialize = std::exchange(script.initialize, [](WizardHost&) { throw Failure(5, "no"); });
  EXPECT_TRUE(wizard->Back());
  EXPECT_EQ(wizard->Identifier() + Buttons(), "BBN-C");
  script.initialize = initialize;
  EXPECT_TRUE(wizard->Back());
  EXPECT_EQ(wizard->Identifier(), "A");
}

TEST_F(VeloWizTest, AnUnknownPageIsToldAndTheCurrentOneStays) {
  MakeScripted();
  EXPECT_FALSE(wizard->Open("Plovix.Nowhere"));
  EXPECT_EQ(scene.dialogs.boxes, Texts{"[wizard.noPage:Plovix.Nowhere]/48"});
  EXPECT_FALSE(wizard->IsOpen());
  script.next = [](const std::string&) { return "Plovix.Nowhere"; };
  EXPECT_TRUE(wizard->Open("A"));
  EXPECT_TRUE(wizard->Next());
  EXPECT_EQ(wizard->Identifier() + Buttons(), "A-N-C");
  EXPECT_EQ(scene.dialogs.boxes.size(), 2U);
}

TEST_F(VeloWizTest, AFailingNextPageIsReportedOnceWhileItLasts) {
  MakeScripted();
  bool failing = false;
  script.next = [&](const std::string&) -> std::string {
    if (failing) throw Failure(failure_number::kObjectNotSet, "no");
    return "B";
  };
  wizard->Open("A");
  EXPECT_EQ(Buttons(), "-N-C");
  for (const int reports : {1, 2}) {
    failing = true;
    Type("txtNext", "1");
    Type("txtNext", "12");
    EXPECT_EQ(Buttons(), "---C");
    EXPECT_EQ(wizard->NextIdentifier(), std::nullopt);
    ASSERT_EQ(scene.dialogs.reports.size(), static_cast<std::size_t>(reports));
    const FailureReport& report = scene.dialogs.reports.back();
    EXPECT_EQ(report.module + "." + report.page + "." + report.procedure,
              "Plovix.Scripted.IWizardPage_GetNextPage");
    EXPECT_EQ(std::pair(report.number, report.line), std::pair(91, 0));
    failing = false;
    Type("txtNext", "123");
    EXPECT_EQ(Buttons(), "-N-C");
  }
}

TEST_F(VeloWizTest, AFailingInitializeIsAnswered) {
  struct Row {
    std::vector<int> answers;
    int failures;
    bool shown;
    int made;
  };
  const std::vector<Row> rows = {
      {{2}, 1, false, 1}, {{7}, 1, false, 1}, {{1}, 1, true, 1}, {{0}, 1, true, 2}, {{0, 0, 2}, 9, false, 3}};
  MakeScripted();
  for (const Row& row : rows) {
    for (const bool first : {true, false}) {  // the first page of a wizard, and a later one
      wizard = std::make_unique<VeloWiz>(scene.Parts(), TaskRecord{});
      int failures = 0;
      script.initialize = [&](WizardHost& host) {
        if (failures-- > 0) throw Failure(failure_number::kInvalidCall, "no");
        host.Refresh(true);
      };
      script.next = [](const std::string&) { return "B"; };
      if (!first) wizard->Open("A");
      failures = row.failures;
      script.made = 0;
      scene.dialogs.reports.clear();
      scene.dialogs.on_report = [&, i = std::size_t{0}](const FailureReport& report) mutable {
        EXPECT_EQ(report.procedure, "IWizardPage_Initialize");
        return row.answers.at(i++);
      };
      if (first) {
        EXPECT_EQ(wizard->Open("B"), row.shown);
      } else {
        EXPECT_TRUE(wizard->Next());
      }
      EXPECT_EQ(wizard->IsOpen(), row.shown || !first);
      if (wizard->IsOpen()) {
        EXPECT_EQ(wizard->Identifier(), row.shown ? "B" : "A");
      }
      EXPECT_EQ(wizard->Buttons().back, row.shown && !first);
      EXPECT_EQ(script.made, row.made);
      EXPECT_EQ(scene.dialogs.reports.size(), row.answers.size());
      EXPECT_EQ(script.alive, wizard->IsOpen() ? 1 : 0);
    }
  }
}

// Fails each Save while `failure` says so.
class FailingStorage final : public TaskStorage {
 public:
  std::vector<TaskRecord> List() override { return tasks.List(); }
  std::optional<TaskRecord> Load(std::int64_t id) override { return tasks.Load(id); }
  TaskRecord Save(const TaskRecord& task, DateTime now) override {
    if (failing) throw Failure(failure_number::kInternal, "disk full");
    return tasks.Save(task, now);
  }
  void Delete(std::int64_t id) override { tasks.Delete(id); }
  MemoryStorage tasks;
  bool failing = true;
};

TEST_F(VeloWizTest, AFailedSaveKeepsEverythingOpen) {
  FailingStorage storage;
  VeloWiz wiz({scene.state, scene.registry, storage, MakeHostControl}, TaskRecord{});
  wiz.Open("Plovix.Actions");
  dynamic_cast<VeloActionList&>(*dynamic_cast<HostSlot&>(wiz.Controls()->At(0)).Embedded())
      .Append(LogAction("x"));
  EXPECT_TRUE(wiz.Finish());
  EXPECT_EQ(scene.dialogs.boxes, Texts{"[wizard.saveFailed:disk full]/48"});
  EXPECT_TRUE(wiz.IsOpen() && wiz.Buttons().finish && wiz.HasChanges());
  storage.failing = false;
  EXPECT_TRUE(wiz.Finish());
  EXPECT_EQ(wiz.End(), WizardEnd::kFinished);
  EXPECT_EQ(storage.List().at(0).actions, std::vector{LogAction("x")});
}

TEST_F(VeloWizTest, AConflictAsksAndSavesAsNew) {
  for (const bool deleted : {false, true}) {
    const TaskRecord opened = scene.storage.Save({}, {});
    Make(opened);
    wizard->Open("Plovix.Actions");
    if (deleted) {
      scene.storage.Delete(opened.id);
    } else {
      scene.storage.Save(opened, {});
    }
    const auto before = scene.storage.List();
    scene.dialogs.boxes.clear();
    scene.dialogs.answers = {message_box::kNo, message_box::kYes};
    EXPECT_TRUE(wizard->Finish());
    EXPECT_TRUE(wizard->IsOpen());
    EXPECT_EQ(scene.storage.List(), before);
    EXPECT_TRUE(wizard->Finish());
    EXPECT_EQ(wizard->End(), WizardEnd::kFinished);
    EXPECT_EQ(scene.dialogs.boxes, (Texts{"[wizard.saveConflict]/36", "[wizard.saveConflict]/36"}));
    EXPECT_EQ(scene.storage.List().size(), before.size() + 1);
    EXPECT_GT(wizard->Saved().id, opened.id);
  }
}

TEST_F(VeloWizTest, EventFailuresAreReportedUnderTheirNames) {
  MakeScripted();
  script.next = [](const std::string& text) { return text; };
  wizard->Open("A");
  At("txtNext").On(Event::kChange, [] { throw std::out_of_range("far"); });
  const int updates = view.updates;
  Type("txtNext", "B");
  ASSERT_EQ(scene.dialogs.reports.size(), 1U);
  EXPECT_EQ(scene.dialogs.reports[0].procedure, "txtNext_Change");
  EXPECT_EQ(scene.dialogs.reports[0].number, 9);
  EXPECT_EQ(Buttons(), "-N-C") << "asked again after every event of the user";
  EXPECT_GT(view.updates, updates);
}

TEST_F(VeloWizTest, AskingToLeaveMovesNowhere) {
  Make();
  EXPECT_FALSE(wizard->AskToLeave(3));
  wizard->Open(kType);
  const std::vector<std::pair<std::int32_t, bool>> rows = {{0, true}, {1, true}, {2, false}, {3, true}};
  for (const auto& [code, answer] : rows) EXPECT_EQ(wizard->AskToLeave(code), answer) << code;
  EXPECT_EQ(wizard->Identifier(), kType);
  EXPECT_FALSE(wizard->Buttons().back);
}

// A page may outlive its wizard; its host reference leads nowhere then.
TEST_F(VeloWizTest, AFormKeptByAWindowOutlivesTheWizard) {
  MakeScripted();
  wizard->Open("A");
  const auto form = wizard->Controls();
  wizard.reset();
  struct Ignored final : UserListener {
    void EventBegins() override {}
    void EventEnds() override {}
    void EventFailed(const Failure& failure, std::string_view) override { number = failure.Number(); }
    int number = 0;
  } listener;
  User late(listener);
  EXPECT_TRUE(late.Type(form->Get("txtNext"), "x"));
  EXPECT_TRUE(late.Press(form->Get("cmdGo")));
  EXPECT_EQ(listener.number, failure_number::kObjectNotSet);
}

}  // namespace
}  // namespace plovix
