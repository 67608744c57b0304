// The promises of the automation manager, kept whatever goes wrong: many seeds, each a world of its own. More
// of them, or a certain one: PLOVIX_SIMULATIONS=100000 PLOVIX_SEED=17 test_simulation.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plovix/standalone/runs/memory_run_store.h>
#include <plovix/standalone/runs/planner.h>
#include <plovix/standalone/schedule/task_schedule.h>
#include <plovix/standalone/storage/sqlite_run_store.h>

#include <cstdlib>

#include "tests/storage/storage_support.h"
#include "world.h"

namespace plovix::test {
namespace {

using What = SimulatedEvent::What;
using std::chrono::hours;

class Checker {
 public:
  Checker(const SimulatedWorld& world, TaskStorage& tasks, RunStore& runs)
      : world_(world), tasks_(tasks), runs_(runs), history_(runs.History(std::nullopt)) {}

  std::set<std::string> Broken() && {
    EachOccurrenceHasOneRow();
    SkippedRunsHadOneBeforeThem();
    WhatRunsWasAnnounced();
    TakenRunsAreTheNewestOwners();
    RunsOfATaskDoNotMix();
    NothingScheduledBeginsInAPause();
    NothingIsLeftHanging();
    WhatIsLeftToAPersonIsBegunOnce();
    NoRecordIsLeftOut();
    return broken_;
  }

 private:
  void Break(const std::string& what, std::int64_t run) {
    broken_.insert(what + ", run " + std::to_string(run));
  }

  Timetable TimetableOf(std::int64_t task) const {
    const TaskRecord stored = tasks_.Load(task).value();
    return {Schedule(*stored.recurrence, *stored.schedule_start, ShortMonth::kLast), world_.TimeZone()};
  }

  void EachOccurrenceHasOneRow() {
    std::map<std::int64_t, std::set<Instant>> own;
    for (const RunRecord& run : history_)
      if (run.due && !run.missed && !own[run.task].insert(*run.due).second) Break("two rows", run.id);
    for (const std::int64_t task : {Ids().repeat, Ids().leave, Ids().once, Ids().modified}) {
      for (const Run& run : NextRuns(TimetableOf(task), world_.Saved(), 10'000, world_.Now() - hours{1})) {
        const Instant at = run.moment.at;
        const auto rows =
            own[task].count(at) +
            static_cast<std::size_t>(std::ranges::count_if(history_, [&](const RunRecord& row) {
              return row.task == task && row.missed && row.missed->from <= at && at <= row.missed->to;
            }));
        if (rows == 0) Break("an occurrence without a row", task);
        // What was missed by a clock that is set back is due again.
        if (rows > 1 && !world_.SetsClock()) Break("an occurrence with two rows", task);
      }
    }
  }

  // Only one that has not begun at all keeps the next one from waiting.
  void SkippedRunsHadOneBeforeThem() {
    std::map<std::int64_t, Instant> begun;
    for (const SimulatedEvent& event : world_.Events())
      if (event.what == What::kClaim) begun.try_emplace(event.run.id, event.at);
    for (const RunRecord& row : history_) {
      if (row.state != RunState::kSkipped || row.reason != "queued" || world_.SetsClock()) continue;
      const bool waited = std::ranges::any_of(history_, [&](const RunRecord& other) {
        return other.task == row.task && other.origin == RunOrigin::kSchedule && other.due < row.due &&
               other.state != RunState::kSkipped && !other.missed &&
               (!begun.contains(other.id) || begun[other.id] >= *row.ended);
      });
      if (!waited) Break("skipped for no other run", row.id);
    }
  }

  void WhatRunsWasAnnounced() {
    for (const RunRecord& run : history_) {
      if (!run.due) continue;
      const auto next = TimetableOf(run.task).Next(*run.due - std::chrono::seconds{1});
      if (!next || next->moment.at != *run.due) Break("due at no time of the schedule", run.id);
    }
  }

  // Each claim has a higher epoch, an end belongs to the newest claim, and nothing follows the last end.
  void TakenRunsAreTheNewestOwners() {
    std::map<std::int64_t, std::int64_t> epochs;
    std::set<std::int64_t> running;
    for (const SimulatedEvent& event : world_.Events()) {
      if (event.what == What::kAction) continue;
      std::int64_t& epoch = epochs[event.run.id];
      const bool claim = event.what == What::kClaim;
      if (claim ? event.run.epoch != epoch + 1 : event.run.epoch != epoch)
        Break("a wrong epoch", event.run.id);
      if (claim != running.insert(event.run.id).second) Break("claimed or ended twice", event.run.id);
      if (!claim) running.erase(event.run.id);
      epoch = event.run.epoch;
    }
  }

  void RunsOfATaskDoNotMix() {
    using Owner = std::pair<std::int64_t, std::int64_t>;
    std::map<std::int64_t, std::vector<Owner>> owners;
    for (const SimulatedEvent& event : world_.Events()) {
      if (event.what != What::kAction) continue;
      auto& before = owners[event.run.task];
      const Owner owner{event.run.id, event.run.epoch};
      if (!before.empty() && before.back() == owner) continue;
      if (std::ranges::count(before, owner) > 0) Break("two runs of one task mixed", event.run.id);
      before.push_back(owner);
    }
  }

  void NothingScheduledBeginsInAPause() {
    for (const SimulatedEvent& event : world_.Events()) {
      if (event.what != What::kClaim) continue;
      const bool by_hand = event.run.origin == RunOrigin::kManual || event.run.IsDry();
      if (event.paused && !by_hand) Break("begun in a pause", event.run.id);
      if (event.run.not_before > event.at) Break("begun too early", event.run.id);
    }
  }

  void NothingIsLeftHanging() {
    for (const RunRecord& run : history_) {
      if (run.state == RunState::kWaiting && run.not_before < world_.Now() - hours{1})
        Break("still waits", run.id);
      if (run.state == RunState::kRunning && *run.started < world_.Now() - hours{1})
        Break("still runs", run.id);
    }
    for (const TaskState& state : runs_.States())
      if (const auto run = runs_.Run(state.running_run); state.running_run != 0 && run->IsOver())
        Break("marked as running", run->id);
  }

  void WhatIsLeftToAPersonIsBegunOnce() {
    std::set<std::tuple<std::int64_t, std::string, std::string>> begun;
    for (const SimulatedEvent& event : world_.Events()) {
      if (event.what != What::kAction) continue;
      const bool once = event.run.task == Ids().once;
      if (!once && event.run.task != Ids().leave) continue;
      if (!begun.insert({once ? 0 : event.run.id, event.record, event.action}).second)
        Break("begun twice: " + event.record + " " + event.action, event.run.id);
    }
  }

  void NoRecordIsLeftOut() {
    for (const std::int64_t task : {Ids().once, Ids().modified}) {
      const auto ledger = runs_.Ledger(task);
      if (ledger.size() != SimulatedWorld::Records().size()) Break("a record was left out", task);
      for (const LedgerRow& row : ledger) {
        const auto run = runs_.Run(row.run);
        if (row.state == LedgerState::kBegun && run->IsOver()) Break("a record is still begun", row.run);
      }
    }
  }

  [[nodiscard]] const SimulatedWorld::Tasks& Ids() const { return world_.Ids(); }

  const SimulatedWorld& world_;
  TaskStorage& tasks_;
  RunStore& runs_;
  std::vector<RunRecord> history_;
  std::set<std::string> broken_;
};

std::uint64_t Setting(const char* name, std::uint64_t usual) {
  const char* text = std::getenv(name);
  return text == nullptr ? usual : std::strtoull(text, nullptr, 10);
}

// One world in memory or in a file; the number of runs that it began.
std::size_t Simulate(TaskStorage& tasks, RunStore& runs, std::uint64_t seed) {
  constexpr int kTurns = 600;
  SimulatedWorld world(tasks, runs, seed);
  world.Live(kTurns);
  EXPECT_THAT(Checker(world, tasks, runs).Broken(), testing::IsEmpty()) << "seed " << seed;
  return static_cast<std::size_t>(std::ranges::count(world.Events(), What::kClaim, &SimulatedEvent::what));
}

TEST(Simulation, KeepsEveryPromiseInMemory) {
  const std::uint64_t first = Setting("PLOVIX_SEED", 1),
                      count = Setting("PLOVIX_SIMULATIONS", 100 / PLOVIX_WALK_DIVISOR);
  std::size_t claims = 0;
  for (std::uint64_t seed = first; seed < first + count && !HasFailure(); ++seed) {
    MemoryStorage tasks;
    MemoryRunStore runs(tasks);
    claims += Simulate(tasks, runs, seed);
  }
  EXPECT_TRUE(HasFailure() || claims > count * 100) << "nothing happened";
}

TEST(Simulation, KeepsEveryPromiseInAFile) {
  const std::uint64_t first = Setting("PLOVIX_SEED", 1),
                      count = Setting("PLOVIX_SIMULATIONS", 100 / PLOVIX_WALK_DIVISOR) / 25 + 1;
  for (std::uint64_t seed = first; seed < first + count && !HasFailure(); ++seed) {
    const OwnTaskFile file;
    SqliteStorage tasks(file.path);
    SqliteRunStore runs(file.path);
    (void)Simulate(tasks, runs, seed);
  }
}

}  // namespace
}  // namespace plovix::test
