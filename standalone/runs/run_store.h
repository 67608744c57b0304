// Where runs, their ledger and the tasks' cursors are stored. Each member is one transaction, and every
// change of state has its condition in it, so that any number of managers and windows can call at the same
// time. A record that a run has begun and not ended is in doubt once the run is over, for the run's reason.
// Implemented in memory for scripts and tests, and for task files.
#pragma once

#include <plovix/standalone/tasks/task_policies.h>

#include <functional>

#include "audit.h"
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
  std::optional<Instant> planned;  // when the cursor was derived, or later the last occurrence that got a row
  std::optional<Pause> paused;
  bool held = false;             // as TaskRecord::held
  std::int64_t paused_row = 0;   // the row for what came due in this pause; 0: nothing yet
  std::int64_t running_run = 0;  // 0: none; dry runs do not count
  bool retrying = false;         // a run of it waits for its next attempt
  bool queued = false;           // an occurrence of it waits for its first attempt
  std::int64_t runs = 0;         // stored; those that Trim keeps beyond its number apart
  // Nothing that is scheduled begins.
  [[nodiscard]] bool IsPaused() const { return paused || held; }
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

// What one transaction of a manager did.
struct Turn {
  struct Claimed {
    RunRecord run;  // running from now on
    TaskPolicies policies;
  };
  std::vector<bool> ended;  // for each end: false if it was refused
  std::vector<Claimed> claimed;
};

// How many runs of a task are kept, and how many are deleted in one transaction.
inline constexpr std::int64_t kMostRunsOfTask = 1'000;
inline constexpr std::int64_t kTrimmedAtOnce = 100;

// Which runs are looked for.
struct RunFilter {
  std::optional<std::int64_t> task;    // nothing: of all tasks
  std::vector<RunState> states;        // one of these; empty: any
  std::optional<std::int64_t> before;  // a run's id: only older ones, to read on
  std::size_t most = 200;
};

// Which records of a run are looked for.
struct LedgerFilter {
  std::int64_t task = 0, run = 0;
  std::string after;       // a record's key: only later ones, to read on
  bool undecided = false;  // only those that failed or are in doubt
  std::size_t most = 1000;
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
  // Tasks whose cursor is at `now` or before, or that were planned later than `now`: the clock was set back.
  [[nodiscard]] virtual std::vector<std::int64_t> Due(Instant now) = 0;
  // The earliest cursor or waiting run that can be begun; nothing if nothing will happen by itself.
  [[nodiscard]] virtual std::optional<Instant> NextWake() = 0;
  // False, and nothing is changed, if the cursor is no longer where it was found.
  virtual bool MoveCursor(const CursorMove& move) = 0;

  // What a person does is written down (Audits) in the same transaction, unless it changes nothing.
  virtual void SetPolicies(std::int64_t task, const TaskPolicies& policies, const Doer& by) = 0;
  // Nothing: resumed.
  virtual void SetPause(std::int64_t task, const std::optional<Pause>& pause, const Doer& by) = 0;
  // Ends the hold of that version of an imported task. False if it is another one by now, or not held.
  virtual bool Release(std::int64_t task, std::int64_t version, const Doer& by) = 0;
  virtual void SetPauseOfAll(const std::optional<Pause>& pause, const Doer& by) = 0;
  [[nodiscard]] virtual std::optional<Pause> PauseOfAll() = 0;

  // Adds what a person asks for, who does so at its `not_before`; returns it with its id, which is 0 if its
  // occurrence has a row already.
  virtual RunRecord Request(RunRecord run) = 0;
  // Cancels a waiting run; a running one is marked for its manager. False if it is over.
  virtual bool Cancel(std::int64_t run, const std::string& reason, const Doer& by) = 0;
  // As Finish, by a person instead of the run's manager.
  virtual bool CloseByForce(const RunEnd& end, const Doer& by) = 0;

  // Ends attempts, and then takes up to `most` runs, each time the one that has waited longest of those that
  // may begin: one run of a task at a time, what a person asked for is not held up by an attempt that is yet
  // to come, everything else is. Manual and dry runs are taken even while all is paused. An end is refused if
  // the run has another epoch by now.
  [[nodiscard]] virtual Turn EndAndClaim(const std::vector<RunEnd>& ends, std::size_t most, Instant now,
                                         std::int64_t manager) = 0;
  [[nodiscard]] std::optional<RunRecord> Claim(Instant now, std::int64_t manager);
  // False if the end is refused.
  bool Finish(const RunEnd& end);
  // What waits for an instant more than `most` after `now` was put off before the clock was set back: it may
  // begin now.
  virtual void BringForward(Instant now, std::chrono::seconds most) = 0;
  // The running runs, whoever has them.
  [[nodiscard]] virtual std::vector<RunRecord> UnderWay() = 0;

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

  // Deletes at most `batch` of the oldest runs of a task that has more than `most`; what is not over stays,
  // and so do its last failure and its last success. Returns whether there may be more to delete. Takes as
  // long as a look-up if there is nothing. Runs of deleted tasks stay: their number does not grow.
  virtual bool Trim(std::int64_t most, std::int64_t batch) = 0;

  // In the order of the keys.
  [[nodiscard]] virtual std::vector<LedgerRow> Ledger(std::int64_t task) = 0;
  [[nodiscard]] virtual std::optional<LedgerRow> LedgerOf(std::int64_t task, const std::string& record) = 0;
  // A part of the rows that the run took last, in the order of the keys.
  [[nodiscard]] virtual std::vector<LedgerRow> LedgerOfRun(const LedgerFilter& filter) = 0;
  // Writes rows for a run that has still this epoch; else false, and nothing is changed.
  virtual bool Write(const RunRecord& run, const std::vector<LedgerRow>& rows) = 0;
  // Forgets all records of the task, or those that failed, and turns off the task's flag that asked for it.
  virtual bool ClearLedger(const RunRecord& run, bool only_failed) = 0;
  // What a person says of a record that failed or is in doubt: done, or forgotten. False for another one.
  virtual bool Decide(std::int64_t task, const std::string& record, bool done, const Doer& by) = 0;

  // Adds an entry for what was done elsewhere; its id is given here.
  virtual void Audit(AuditEntry entry) = 0;
  // What people did, newest first; the newest kMostAudits are kept.
  [[nodiscard]] virtual std::vector<AuditEntry> Audits(const AuditFilter& filter) = 0;
};

inline std::optional<RunRecord> RunStore::Claim(Instant now, std::int64_t manager) {
  Turn turn = EndAndClaim({}, 1, now, manager);
  return turn.claimed.empty() ? std::nullopt : std::optional(std::move(turn.claimed.front().run));
}

inline bool RunStore::Finish(const RunEnd& end) {
  return EndAndClaim({end}, 0, end.at, 0).ended.front();
}

}  // namespace plovix
