// Where runs, their ledger and the tasks' cursors are stored. Each member is one transaction, and every
// change of state has its condition in it, so that any number of managers and windows can call at the same
// time. Implemented in memory for scripts and tests, and for task files.
#pragma once

#include <plovix/standalone/tasks/task_policies.h>

#include <functional>

#include "run_record.h"

namespace plovix {

struct Pause {
  std::string person, reason;
  Instant since;
  bool operator==(const Pause&) const = default;
};

// What is stored beside a task for its runs.
struct TaskState {
  std::int64_t task = 0;
  TaskPolicies policies;
  std::int64_t version = 0;  // of the task that `schedule` was taken from
  std::string schedule;      // fingerprint of what the cursor follows from; empty: nothing is scheduled
  std::optional<Instant> next_due;  // the cursor: the first occurrence without a row
  std::optional<Instant> planned;   // the last occurrence that got a row
  std::optional<Pause> paused;
  std::int64_t paused_row = 0;   // the row for what came due in this pause; 0: nothing yet
  std::int64_t running_run = 0;  // 0: none; dry runs do not count
  bool retrying = false;         // a run of it waits for its next attempt
  bool queued = false;           // an occurrence of it waits for its first attempt
  bool operator==(const TaskState&) const = default;
};

// The rows that a planner adds as it moves a task's cursor from where it found it.
struct CursorMove {
  std::int64_t task = 0;
  std::optional<Instant> from, to;  // the cursor before and after
  std::int64_t version = 0;
  std::string schedule;
  std::optional<Instant> planned;
  std::vector<RunRecord> rows;  // without ids; a row whose task and due instant are there already is left out
  bool add_to_paused_row = false;  // a missed row extends the one of this pause
};

// The end of an attempt.
struct RunEnd {
  std::int64_t run = 0, epoch = 0;
  RunState state = RunState::kFailed;  // kWaiting: another attempt at `not_before`
  Instant at, not_before;
  std::string reason;
  int failures = 0, repeats = 0;  // the run's from now on
  RecordCounts records;
  std::vector<LedgerRow> rows;  // written together with the end
  std::string planned;
};

// Which runs are looked for.
struct RunFilter {
  std::optional<std::int64_t> task;    // nothing: of all tasks
  std::vector<RunState> states;        // one of these; empty: any
  std::optional<std::int64_t> before;  // a run's id: only older ones, to read on
  std::size_t most = 200;
};

class RunStore {
 public:
  virtual ~RunStore() = default;

  // The states of all tasks that exist, those without one with the defaults; of one task: nothing if it is
  // gone.
  [[nodiscard]] virtual std::vector<TaskState> States() = 0;
  [[nodiscard]] virtual std::optional<TaskState> State(std::int64_t task) = 0;
  // What the task's short months mean; the default for a task that does not exist.
  [[nodiscard]] ShortMonth ShortMonthOf(std::int64_t task) {
    return State(task).value_or(TaskState()).policies.short_month;
  }
  // Tasks whose stored version is not the one that their cursor was derived from.
  [[nodiscard]] virtual std::vector<std::int64_t> Unplanned() = 0;
  // Tasks whose cursor is at `now` or before.
  [[nodiscard]] virtual std::vector<std::int64_t> Due(Instant now) = 0;
  // The earliest cursor or waiting run that can be begun; nothing if nothing will happen by itself.
  [[nodiscard]] virtual std::optional<Instant> NextWake() = 0;
  // False, and nothing is changed, if the cursor is no longer where it was found.
  virtual bool MoveCursor(const CursorMove& move) = 0;

  virtual void SetPolicies(std::int64_t task, const TaskPolicies& policies) = 0;
  // Nothing: resumed.
  virtual void SetPause(std::int64_t task, const std::optional<Pause>& pause) = 0;
  virtual void SetPauseOfAll(const std::optional<Pause>& pause) = 0;
  [[nodiscard]] virtual std::optional<Pause> PauseOfAll() = 0;

  // Adds what a person asks for; returns it with its id, which is 0 if its occurrence has a row already.
  virtual RunRecord Request(RunRecord run) = 0;
  // Cancels a waiting run; a running one is marked for its manager. False if it is over.
  virtual bool Cancel(std::int64_t run, Instant now, const std::string& reason) = 0;

  // Takes the run that has waited longest of those that may begin, and marks its task as running: one run of
  // a task at a time, what a person asked for is not held up by an attempt that is yet to come, everything
  // else is. Nothing if there is none. Manual and dry runs are taken even while all is paused.
  [[nodiscard]] virtual std::optional<RunRecord> Claim(Instant now, std::int64_t manager) = 0;
  // False, and nothing is changed, if the run has another epoch by now.
  virtual bool Finish(const RunEnd& end) = 0;
  // The running runs whose manager `alive` does not know.
  [[nodiscard]] virtual std::vector<RunRecord> Orphans(
      const std::function<bool(std::int64_t manager)>& alive) = 0;
  [[nodiscard]] virtual std::vector<RunRecord> MarkedForCancel(std::int64_t manager) = 0;

  // The same number as before means that nobody has written in between. Costs microseconds, so that windows
  // can ask all the time.
  [[nodiscard]] virtual std::int64_t ChangeCount() = 0;

  // Oldest first.
  [[nodiscard]] virtual std::vector<RunRecord> History(std::optional<std::int64_t> task) = 0;
  [[nodiscard]] virtual std::optional<RunRecord> Run(std::int64_t run) = 0;
  // A part of the history, newest first.
  [[nodiscard]] virtual std::vector<RunRecord> Recent(const RunFilter& filter) = 0;
  // The newest run of each task that exists, dry ones left out; in the order of the tasks.
  [[nodiscard]] virtual std::vector<RunRecord> LatestOfEach() = 0;

  // In the order of the keys.
  [[nodiscard]] virtual std::vector<LedgerRow> Ledger(std::int64_t task) = 0;
  [[nodiscard]] virtual std::optional<LedgerRow> LedgerOf(std::int64_t task, const std::string& record) = 0;
  // Writes rows for a run that has still this epoch; else false, and nothing is changed.
  virtual bool Write(const RunRecord& run, const std::vector<LedgerRow>& rows) = 0;
  // Forgets all records of the task, or those that failed, and turns off the task's flag that asked for it.
  virtual bool ClearLedger(const RunRecord& run, bool only_failed) = 0;
  // What a person says of a record that failed or is in doubt: done, or forgotten. False for another one.
  virtual bool Decide(std::int64_t task, const std::string& record, bool done) = 0;
};

}  // namespace plovix
