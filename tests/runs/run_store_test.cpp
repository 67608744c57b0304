// What holds for every store of runs: in memory, and in task files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plovix/standalone/runs/memory_run_store.h>
#include <plovix/standalone/runs/run_rules.h>
#include <plovix/standalone/runs/task_control.h>
#include <plovix/standalone/storage/sqlite_run_store.h>

#include "tests/storage/storage_support.h"

namespace plovix::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum RunOrigin;
using enum RunState;
constexpr std::nullopt_t kNothing = std::nullopt;

constexpr Instant At(int second) {
  return Instant(std::chrono::seconds(second));
}

const Doer kAnn{"ann", At(2)};

RunRecord Of(std::int64_t task, RunOrigin origin, int at) {
  RunRecord run;
  run.task = task;
  run.origin = origin;
  run.not_before = At(at);
  if (origin == kSchedule || origin == kCatchUp) run.due = At(at);
  return run;
}

RunRecord Missed(std::int64_t task, int from, int to, std::int64_t count) {
  RunRecord row = Of(task, kSchedule, from);
  row.state = kMissed;
  row.missed = {At(from), At(to), count};
  return row;
}

RunEnd EndOf(std::int64_t run, std::int64_t epoch, RunState state, int at, std::vector<LedgerRow> rows = {}) {
  return {run, epoch, state, At(at), At(at), "why", 1, 2, {6, 3, 2, 1}, std::move(rows), "[]"};
}

LedgerRow Row(const char* record, LedgerState state = LedgerState::kDone) {
  return {record, state, "print", 1, "why"};
}

// Tasks and their runs in one of the stores.
struct Stores {
  explicit Stores(bool in_file) {
    if (!in_file) return;
    tasks = std::make_unique<SqliteStorage>(file.path);
    runs = std::make_unique<SqliteRunStore>(file.path);
  }
  std::int64_t NewTask() {
    const TaskRecord task = tasks->Save(WholeTask("a"), kNow);
    EXPECT_THAT(runs->Unplanned(), testing::Contains(task.id));
    return task.id;
  }
  bool Move(std::int64_t task, std::optional<Instant> from, int to, std::vector<RunRecord> rows,
            bool adds_to_paused_row = false) {
    return runs->MoveCursor({task, from, At(to), 1, "s", At(to - 1), std::move(rows), adds_to_paused_row});
  }
  RunRecord Begin(std::int64_t task, RunOrigin origin = kManual) {
    runs->Request(Of(task, origin, 1));
    return runs->Claim(At(1), 7).value();
  }
  OwnTaskFile file;
  std::unique_ptr<TaskStorage> tasks = std::make_unique<MemoryStorage>();
  std::unique_ptr<RunStore> runs = std::make_unique<MemoryRunStore>(*tasks);
};

class RunStores : public testing::TestWithParam<bool>, public Stores {
 protected:
  RunStores() : Stores(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(Each, RunStores, testing::Bool(),
                         [](const auto& each) { return each.param ? "File" : "Memory"; });

TEST_P(RunStores, MoveACursorOnlyFromWhereItWasFound) {
  const std::int64_t task = NewTask();
  TaskState state;
  state.task = task;
  EXPECT_EQ(runs->State(task), state);
  EXPECT_TRUE(Move(task, kNothing, 10, {}));
  state.version = 1;
  state.schedule = "s";
  state.next_due = At(10);
  state.planned = At(9);
  for (const std::optional<Instant> from : {std::optional<Instant>(), {At(9)}})
    EXPECT_FALSE(Move(task, from, 11, {Of(task, kSchedule, 10)}));
  EXPECT_THAT(runs->States(), ElementsAre(state));
  EXPECT_THAT(runs->History(kNothing), IsEmpty());
  EXPECT_THAT(runs->Unplanned(), IsEmpty());
  EXPECT_THAT(runs->Due(At(9)), IsEmpty());
  EXPECT_THAT(runs->Due(At(10)), ElementsAre(task));
  EXPECT_EQ(runs->NextWake(), At(10));
  tasks->Save(*tasks->Load(task), kNow);
  EXPECT_THAT(runs->Unplanned(), ElementsAre(task));
}

TEST_P(RunStores, GiveAnOccurrenceOneRowAndLeaveMissedOnesOut) {
  const std::int64_t task = NewTask(), other = NewTask();
  for (const std::optional<Instant> from : {std::optional<Instant>(), {At(10)}}) {
    EXPECT_TRUE(Move(task, from, 10, {Of(task, kSchedule, 5), Missed(task, 5, 5, 1), Missed(task, 5, 5, 1)}));
    EXPECT_TRUE(Move(other, from, 10, {Of(other, from ? kSchedule : kCatchUp, 5)}));
  }
  EXPECT_TRUE(runs->State(task)->queued);
  EXPECT_EQ(runs->History(task).size(), 5U);
  EXPECT_EQ(runs->History(other).size(), 1U);
}

TEST_P(RunStores, ExtendTheRowOfAPauseUntilItEnds) {
  for (const bool of_all : {false, true}) {
    const std::int64_t task = NewTask();
    const auto set = [&](const std::optional<Pause>& pause) {
      of_all ? runs->SetPauseOfAll(pause, kAnn) : runs->SetPause(task, pause, kAnn);
      EXPECT_EQ(of_all ? runs->PauseOfAll() : runs->State(task)->paused, pause);
    };
    set(Pause{"ann", "why", At(1)});
    EXPECT_TRUE(Move(task, kNothing, 20, {Missed(task, 10, 10, 1)}, true));
    EXPECT_TRUE(Move(task, At(20), 40, {Missed(task, 20, 30, 2)}, true));
    EXPECT_EQ(runs->History(task).back().missed, (MissedSpan{At(10), At(30), 3}));
    EXPECT_EQ(runs->State(task)->paused_row, runs->History(task).back().id);
    set({});
    EXPECT_EQ(runs->State(task)->paused_row, 0);
    EXPECT_TRUE(Move(task, At(40), 50, {Missed(task, 40, 40, 1)}, true));
    EXPECT_EQ(runs->History(task).size(), 2U);
  }
}

TEST_P(RunStores, BeginWhatMayBegin) {
  const std::set<RunOrigin> all{kSchedule, kCatchUp, kManual, kDryRun}, people{kManual, kDryRun};
  const struct {
    const char* situation;
    std::function<void(Stores& stores, std::int64_t task)> arise;
    std::set<RunOrigin> begin;
  } cases[] = {
      {"nothing", [](auto&, auto) {}, all},
      {"a dry run runs", [](auto& stores, auto task) { stores.Begin(task, kDryRun); }, all},
      {"it runs", [](auto& stores, auto task) { stores.Begin(task); }, {kDryRun}},
      {"it is retried",
       [](auto& stores, auto task) {
         stores.runs->Finish(EndOf(stores.Begin(task).id, 1, kWaiting, 99));
         EXPECT_TRUE(stores.runs->State(task)->retrying);
       },
       people},
      {"it is paused", [](auto& stores, auto task) { stores.runs->SetPause(task, Pause(), kAnn); }, people},
      {"all is paused", [](auto& stores, auto) { stores.runs->SetPauseOfAll(Pause(), kAnn); }, people},
  };
  for (const auto& test : cases) {
    for (const RunOrigin origin : all) {
      SCOPED_TRACE(testing::Message() << test.situation << " and " << kRunOriginNames[IndexOf(origin)]);
      Stores stores(GetParam());
      const std::int64_t task = stores.NewTask();
      test.arise(stores, task);
      const RunRecord run = stores.runs->Request(Of(task, origin, 9));
      const TaskState before = *stores.runs->State(task);
      EXPECT_EQ(before.queued, origin == kSchedule);
      const bool begins = test.begin.contains(origin), holds = begins && origin != kDryRun;
      EXPECT_EQ(stores.runs->NextWake() == At(9), begins);
      EXPECT_EQ(stores.runs->Claim(At(8), 7), kNothing);
      const auto begun = begins ? std::optional(Begun(run, At(9), 7)) : kNothing;
      EXPECT_EQ(stores.runs->Claim(At(9), 7), begun);
      EXPECT_EQ(stores.runs->Run(run.id), begun.value_or(run));
      EXPECT_EQ(stores.runs->State(task)->running_run, holds ? run.id : before.running_run);
    }
  }
}

TEST_P(RunStores, TakeWhatHasWaitedLongestAndOneRunOfATask) {
  const std::int64_t a = NewTask(), b = NewTask();
  for (const auto& [task, at] : {std::pair(a, 5), {a, 3}, {b, 3}, {b, 4}})
    runs->Request(Of(task, kManual, at));
  std::vector<std::int64_t> taken;
  for (int i = 0; i < 2; ++i) {
    const std::size_t before = taken.size();
    while (const auto run = runs->Claim(At(9), 7)) taken.push_back(run->id);
    for (std::size_t each = before; each < taken.size(); ++each)
      EXPECT_TRUE(runs->Finish(EndOf(taken[each], 1, kSucceeded, 9)));
  }
  EXPECT_THAT(taken, ElementsAre(2, 3, 4, 1));
}

TEST_P(RunStores, BringForwardWhatTheClockWentBackFrom) {
  const std::int64_t task = NewTask();
  for (const int at : {3610, 3611}) runs->Request(Of(task, kManual, at));
  runs->BringForward(At(10), std::chrono::seconds(3600));
  EXPECT_EQ(runs->Run(1)->not_before, At(3610));
  EXPECT_EQ(runs->Run(2)->not_before, At(10));
}

TEST_P(RunStores, ObeyTheNewestOwnerAlone) {
  const std::int64_t task = NewTask();
  const RunRecord former = Begin(task, kSchedule);
  const RunEnd failed = EndOf(former.id, 1, kWaiting, 4);
  EXPECT_TRUE(runs->Write(former, {Row("i:2", LedgerState::kBegun), Row("i:1")}));
  EXPECT_TRUE(runs->Finish(failed));
  const RunRecord newest = runs->Claim(At(5), 8).value();
  EXPECT_EQ(newest, Begun(Ended(former, failed), At(5), 8));
  EXPECT_FALSE(runs->State(task)->retrying);
  EXPECT_FALSE(runs->Write(former, {Row("i:3")}));
  EXPECT_FALSE(runs->ClearLedger(former, false));
  EXPECT_FALSE(runs->Finish(EndOf(former.id, 1, kFailed, 6)));
  EXPECT_EQ(runs->Run(former.id), newest);
  const RunEnd end = EndOf(newest.id, 2, kPartly, 6, {Row("i:2")});
  EXPECT_TRUE(runs->Finish(end));
  EXPECT_FALSE(runs->Finish(end)) << "it is over";
  EXPECT_THAT(runs->History(kNothing), ElementsAre(Ended(newest, end)));
  EXPECT_THAT(runs->Ledger(task), ElementsAre(Row("i:1"), Row("i:2")));
  EXPECT_EQ(runs->LedgerOf(task, "i:2"), Row("i:2"));
  EXPECT_EQ(runs->LedgerOf(task, "i:3"), kNothing);
}

TEST_P(RunStores, ReadThePartOfALedgerThatIsARuns) {
  const std::int64_t task = NewTask();
  const RunRecord run = Begin(task);
  const LedgerRow failed = Row("i:2", LedgerState::kFailed), doubt = Row("t:a", LedgerState::kInDoubt);
  LedgerRow other = Row("i:4");
  other.run = run.id + 1;
  EXPECT_TRUE(runs->Write(run, {doubt, other, failed, Row("i:1"), Row("i:3")}));
  const auto read = [&](const char* after, bool undecided) {
    return runs->LedgerOfRun({task, run.id, after, undecided, 2});
  };
  EXPECT_THAT(read("", false), ElementsAre(Row("i:1"), failed));
  EXPECT_THAT(read("i:2", false), ElementsAre(Row("i:3"), doubt));
  EXPECT_THAT(read("", true), ElementsAre(failed, doubt));
  EXPECT_THAT(read("t:a", true), IsEmpty());
}

TEST_P(RunStores, CancelWhatWaitsAndMarkWhatRuns) {
  const std::int64_t task = NewTask(), running = Begin(task).id;
  const std::int64_t waiting = runs->Request(Of(task, kManual, 1)).id;
  EXPECT_FALSE(runs->UnderWay().front().cancel);
  for (const std::int64_t run : {running, waiting}) EXPECT_TRUE(runs->Cancel(run, "why", kAnn));
  for (const std::int64_t run : {waiting, std::int64_t{99}}) EXPECT_FALSE(runs->Cancel(run, "late", kAnn));
  const RunRecord over = *runs->Run(waiting);
  EXPECT_EQ(std::tuple(over.state, over.ended, over.reason), std::tuple(kCancelled, At(2), "why"));
  const RunRecord marked = *runs->Run(running);
  EXPECT_TRUE(marked.cancel);
  EXPECT_THAT(runs->UnderWay(), ElementsAre(marked));
}

TEST_P(RunStores, WriteDownWhatPeopleDid) {
  TaskRecord imported = WholeTask("b");
  imported.held = true;
  const std::int64_t task = NewTask(), held = tasks->Save(imported, kNow).id;
  EXPECT_FALSE(runs->Release(held, 9, kAnn));
  EXPECT_TRUE(runs->Release(held, 1, kAnn));
  EXPECT_FALSE(runs->Release(held, 1, kAnn)) << "it is released";
  EXPECT_TRUE(
      runs->Write(Begin(task), {Row("i:1", LedgerState::kFailed), Row("i:2", LedgerState::kInDoubt)}));
  for (const bool done : {false, true}) {
    EXPECT_TRUE(runs->Decide(task, done ? "i:1" : "i:2", done, kAnn));
    EXPECT_FALSE(runs->Decide(task, done ? "i:1" : "i:2", done, kAnn)) << "it is decided";
  }
  EXPECT_THAT(runs->Ledger(task), ElementsAre(Row("i:1")));
  EXPECT_TRUE(runs->CloseByForce(EndOf(1, 1, kCancelled, 2), kAnn));
  EXPECT_FALSE(runs->CloseByForce(EndOf(1, 1, kCancelled, 2), kAnn)) << "it is over";
  runs->SetPause(task, Pause{"ann", "why", At(2)}, kAnn);
  RunRecord asked = Of(task, kManual, 2);
  asked.person = "ann";
  EXPECT_TRUE(runs->Cancel(runs->Request(asked).id, "why", kAnn));
  runs->SetPauseOfAll({}, kAnn);
  runs->SetPolicies(task, {}, kAnn);
  const AuditEntry own{10, At(3), "bob", Deed::kResume, task, 0, ""};
  runs->Audit(own);
  std::vector<std::tuple<std::int64_t, Deed, std::int64_t, std::int64_t, std::string>> found;
  for (const AuditEntry& entry : runs->Audits({.task = {}, .before = own.id, .most = 99})) {
    EXPECT_EQ(std::pair(entry.person, entry.at), std::pair(kAnn.person, kAnn.at));
    found.emplace_back(entry.id, entry.deed, entry.task, entry.run, entry.detail);
  }
  const std::string policies =
      "missed once, overlap skip, retries 0, interrupted repeat, short-month last, limit 0";
  EXPECT_THAT(
      found,
      ElementsAre(std::tuple(9, Deed::kSetPolicies, task, 0, policies),
                  std::tuple(8, Deed::kResumeAll, 0, 0, ""), std::tuple(7, Deed::kCancel, task, 2, ""),
                  std::tuple(6, Deed::kStart, task, 2, ""), std::tuple(5, Deed::kPause, task, 0, "why"),
                  std::tuple(4, Deed::kCloseByForce, task, 1, ""),
                  std::tuple(3, Deed::kCountAsDone, task, 1, "i:1"),
                  std::tuple(2, Deed::kForget, task, 1, "i:2"), std::tuple(1, Deed::kRelease, held, 0, "1")));
  EXPECT_THAT(runs->Audits({.task = task, .before = {}, .most = 1}), ElementsAre(own));
  EXPECT_EQ(runs->Audits({.task = held, .before = {}, .most = 9}).size(), 1U);
}

TEST_P(RunStores, KeepTheNewestRunsOfATaskWithItsLastSuccessAndFailure) {
  const std::int64_t task = NewTask(), other = NewTask();
  const auto run = [&](RunState state) {
    const std::int64_t id = Begin(task).id;
    EXPECT_TRUE(runs->Finish(EndOf(id, 1, state, 2)));
    return id;
  };
  const auto trim = [&] {
    int batches = 0;
    for (; runs->Trim(3, 2) && batches < 9; ++batches) EXPECT_GE(runs->History(task).size(), 3U);
    EXPECT_EQ(runs->State(task)->runs, 3);
    std::vector<std::int64_t> kept;
    for (const RunRecord& each : runs->History(task)) kept.push_back(each.id);
    return kept;
  };
  runs->Request(Of(other, kManual, 99));
  EXPECT_FALSE(runs->Trim(3, 2));
  run(kFailed);
  const std::int64_t failed = run(kPartly);
  run(kSucceeded);
  const std::int64_t succeeded = run(kSucceeded);
  std::vector<std::int64_t> kept{failed, succeeded};
  for (int i = 0; i < 6; ++i) kept.push_back(run(kCancelled));
  EXPECT_EQ(runs->State(task)->runs, 10);
  kept.erase(kept.begin() + 2, kept.begin() + 5);
  EXPECT_EQ(trim(), kept);
  kept.push_back(run(kSucceeded));
  kept.erase(kept.begin() + 1, kept.begin() + 3);
  EXPECT_EQ(trim(), kept) << "the former success is not the last one any more";
  EXPECT_EQ(runs->History(other).size(), 1U);
}

TEST_P(RunStores, ClearALedgerAndTurnOffTheFlagThatAskedForIt) {
  TaskRecord task = *tasks->Load(NewTask());
  task.process_all_records = task.process_failed_records = true;
  task = tasks->Save(task, kNow);
  const RunRecord run = Begin(task.id);
  const LedgerRow in_doubt = Row("t:b", LedgerState::kInDoubt), failed = Row("i:9", LedgerState::kFailed);
  EXPECT_TRUE(runs->Write(run, {in_doubt, failed, Row("t:a")}));
  EXPECT_TRUE(runs->ClearLedger(run, true));
  EXPECT_THAT(runs->Ledger(task.id), ElementsAre(Row("t:a"), in_doubt));
  task.process_all_records = task.process_failed_records = false;
  EXPECT_EQ(tasks->Load(task.id), task);
  EXPECT_TRUE(runs->ClearLedger(run, false));
  EXPECT_THAT(runs->Ledger(task.id), IsEmpty());
}

TEST_P(RunStores, KeepOfADeletedTaskItsHistoryAlone) {
  const std::int64_t task = NewTask();
  EXPECT_TRUE(Move(task, kNothing, 2, {}));
  const RunRecord run = Begin(task);
  EXPECT_TRUE(runs->Write(run, {Row("i:1")}));
  const RunRecord waiting = runs->Request(Of(task, kManual, 3));
  tasks->Delete(task, 1);
  EXPECT_THAT(runs->Unplanned(), IsEmpty());
  EXPECT_THAT(runs->States(), IsEmpty());
  EXPECT_EQ(runs->State(task), kNothing);
  EXPECT_TRUE(runs->Finish(EndOf(run.id, 1, kFailed, 2, {Row("i:2")})));
  EXPECT_EQ(runs->NextWake(), At(3));
  EXPECT_EQ(runs->Claim(At(3), 7), Begun(waiting, At(3), 7)) << "to end with the reason";
  EXPECT_THAT(runs->Ledger(task), IsEmpty());
  EXPECT_EQ(runs->History(task).size(), 2U);
}

TEST_P(RunStores, KeepWhatIsAskedForAndHow) {
  const std::int64_t task = NewTask();
  TaskPolicies policies{MissedPolicy::kAll, 3, OverlapPolicy::kQueue, 4, InterruptedPolicy::kLeave};
  policies.short_month = ShortMonth::kSkip;
  policies.limit = std::chrono::seconds(5);
  runs->SetPolicies(task, policies, kAnn);
  EXPECT_EQ(runs->State(task)->policies, policies);
  RunRecord run = Of(task, kManual, -1);
  run.person = "r\xC3\xA9mi";
  run.keys = {"i:1", "t:\"\n"};
  run = runs->Request(run);
  EXPECT_EQ(run.id, 1);
  EXPECT_THAT(runs->History(task), ElementsAre(run));
}

// Whoever may run it, and programs if it does, releases the version that they have seen.
TEST_P(RunStores, HoldAnImportedTaskUntilItIsReleased) {
  UserRecord ann{.id = "ann", .name = "", .groups = {}, .create_shared = true};
  TaskControl control({.tasks = *tasks,
                       .runs = *runs,
                       .zone = *Zone::Named("UTC"),
                       .now = [] { return At(5); },
                       .person = "ann",
                       .user = [&] { return ann; }});
  TaskRecord task = WholeTask("c");
  task.held = true;
  task.actions = {{"run-sql", "", 1, 1, {}}};
  task = tasks->Save(task, kNow);
  task.held = false;
  task = tasks->Save(task, kNow);
  EXPECT_TRUE(task.held) << "a save does not release it";
  const std::int64_t id = task.id;
  EXPECT_TRUE(runs->State(id)->IsPaused());
  const std::pair<int, std::function<void()>> refused[] = {
      {5, [&] { control.Start(id, kManual); }},
      {5, [&] { control.Resume(id); }},
      {70, [&] { control.Release(id, task.version); }},
      {5,
       [&] {
         ann.run_programs = true;
         control.Release(id, task.version - 1);
       }},
  };
  for (const auto& [number, deed] : refused) EXPECT_EQ(FailureOf(deed).Number(), number);
  control.Start(id, kDryRun);
  control.Release(id, task.version);
  EXPECT_FALSE(tasks->Load(id)->held);
  EXPECT_FALSE(runs->State(id)->IsPaused());
  control.Start(id, kManual);
}

TEST(SqliteRunStore, IsPausedOnceWhereItsFileIsNotTheOneThatWasRunBefore) {
  const OwnTaskFile file;
  const std::string copy = file.folder / "copy";
  RunRecord run = Of(1, kManual, 1);
  std::int64_t running = 0, waiting = 0;
  {
    SqliteStorage(file.path).Save(WholeTask("a"), kNow);
    SqliteRunStore runs(file.path);
    for (int i = 0; i < 2; ++i) EXPECT_FALSE(runs.PauseIfRestored(false, At(1)));
    running = runs.Request(run).id;
    (void)runs.Claim(At(1), 7);
    waiting = runs.Request(run).id;
  }
  std::filesystem::copy_file(file.path, copy);
  SqliteRunStore runs(copy);
  EXPECT_TRUE(runs.PauseIfRestored(false, At(2)));
  EXPECT_EQ(runs.PauseOfAll(), (Pause{"", "restored", At(2)}));
  EXPECT_EQ(runs.Run(waiting)->state, kCancelled);
  EXPECT_TRUE(runs.Run(running)->cancel);
  EXPECT_FALSE(runs.PauseIfRestored(false, At(3)));
  runs.SetPauseOfAll({}, kAnn);
  EXPECT_FALSE(runs.PauseIfRestored(false, At(4)));
  EXPECT_EQ(runs.PauseOfAll(), kNothing);
  EXPECT_TRUE(runs.PauseIfRestored(true, At(5))) << "the same file, in an earlier state";
}

TEST(SqliteRunStore, KeepsTheSettingsOfItsFile) {
  const OwnTaskFile file, other;
  SqliteRunStore runs(file.path);
  EXPECT_EQ(runs.ZoneName(), "");
  runs.SetZone("Europe/Paris");
  runs.SetPauseOfAll(Pause{"ann", "why", At(1)}, kAnn);
  EXPECT_EQ(SqliteRunStore(file.path).ZoneName(), "Europe/Paris");
  EXPECT_EQ(SqliteRunStore(file.path).FileId(), runs.FileId());
  EXPECT_NE(SqliteRunStore(other.path).FileId(), runs.FileId());
}

TEST(SqliteRunStore, TellsWhetherAnybodyHasWritten) {
  const OwnTaskFile file;
  SqliteRunStore runs(file.path), others(file.path);
  std::int64_t before = runs.ChangeCount();
  EXPECT_EQ(runs.ChangeCount(), before);
  (void)runs.Claim(At(1), 1);
  EXPECT_EQ(runs.ChangeCount(), before) << "there was nothing to claim";
  for (SqliteRunStore* writer : {&runs, &others}) {
    writer->SetZone(writer == &runs ? "UTC" : "Europe/Paris");
    EXPECT_NE(runs.ChangeCount(), before);
    before = runs.ChangeCount();
    EXPECT_EQ(runs.ChangeCount(), before);
  }
}

}  // namespace
}  // namespace plovix::test
