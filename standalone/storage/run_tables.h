// The statements on the tables of runs in a task file. Used by the store of runs, which puts them together
// into transactions.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "run_columns.h"
#include "task_file.h"

namespace plovix {

// Members that read fail with 321 on a value that no program of this kind has stored.
class RunTables final {
 public:
  RunTables(const std::string& path, std::chrono::milliseconds patience)
      : file_(OpenTaskFile(path, patience)) {}

  [[nodiscard]] Connection& File() noexcept { return *file_; }

  [[nodiscard]] std::vector<TaskState> States();
  [[nodiscard]] std::optional<TaskState> State(std::int64_t task);
  // For a task that exists.
  void Put(const TaskState& state);
  // What the task's waiting runs say of it.
  void ReadFlags(TaskState& state);
  void ForgetPausedRows();
  // As TaskStorage::Release.
  [[nodiscard]] bool Release(std::int64_t task, std::int64_t version);

  [[nodiscard]] std::vector<std::int64_t> Unplanned() { return Ids(unplanned_); }
  [[nodiscard]] std::vector<std::int64_t> Due(Instant now);
  [[nodiscard]] std::optional<Instant> FirstDue();

  // Returns the new run's id; 0 if its occurrence has a row already.
  [[nodiscard]] std::int64_t Insert(const RunRecord& run);
  void Put(const RunRecord& run);
  [[nodiscard]] std::optional<RunRecord> Run(std::int64_t run);
  // Oldest first; of all tasks, or one.
  [[nodiscard]] std::vector<RunRecord> History(std::optional<std::int64_t> task);
  [[nodiscard]] std::vector<RunRecord> Recent(const RunFilter& filter);
  [[nodiscard]] std::vector<RunRecord> LatestOfEach();
  [[nodiscard]] std::vector<RunRecord> Running() { return Runs(running_); }
  // Whether a run waits for an instant after `at`; and lets these begin at `now`.
  [[nodiscard]] bool WaitsBeyond(Instant at) const;
  void BringForward(Instant now, Instant at) const;
  // Not over, and asked for by a person.
  [[nodiscard]] std::vector<RunRecord> AskedFor() const;
  // The run that waits longest of those that may begin by `until`, as far as the rules need it: with its id.
  [[nodiscard]] std::optional<RunRecord> FirstToBegin(Instant until, bool all_paused);

  // A task of whose runs more than `most` are stored.
  [[nodiscard]] std::optional<std::int64_t> TaskWithMoreRuns(std::int64_t most) const;
  // Deletes the oldest ones, as RunStore::Trim says; returns how many.
  [[nodiscard]] std::int64_t TrimRuns(std::int64_t task, std::int64_t most, std::int64_t batch);

  // For a task that exists.
  void Put(std::int64_t task, const LedgerRow& row);
  [[nodiscard]] std::vector<LedgerRow> Ledger(std::int64_t task);
  [[nodiscard]] std::optional<LedgerRow> LedgerOf(std::int64_t task, const std::string& record);
  // What the run has begun and not ended.
  void LeaveInDoubt(const RunRecord& run);
  [[nodiscard]] std::vector<LedgerRow> LedgerOfRun(const LedgerFilter& filter);
  void Forget(std::int64_t task, const std::string& record);
  void ClearLedger(std::int64_t task, bool only_failed);
  // Whether ClearLedger would change nothing.
  [[nodiscard]] bool IsCleared(std::int64_t task, bool only_failed);

  // Adds an entry and forgets those that are too old; returns its id.
  std::int64_t Add(const AuditEntry& entry);
  [[nodiscard]] std::vector<AuditEntry> Audits(const AuditFilter& filter);

  [[nodiscard]] std::vector<ManagerRecord> Managers();
  void Add(const ManagerRecord& manager);
  void RemoveManager(std::int64_t number);

  [[nodiscard]] FileSettings Settings();
  void Put(const FileSettings& settings);

 private:
  [[nodiscard]] std::vector<std::int64_t> Ids(Statement& statement);
  [[nodiscard]] RunRecord RunIn(const Statement& row) const;
  [[nodiscard]] std::vector<RunRecord> Runs(Statement& statement) const;
  [[nodiscard]] std::vector<TaskState> ReadStates(Statement& statement);
  [[nodiscard]] std::vector<LedgerRow> ReadLedger(Statement& statement);
  void CheckReadable(std::string_view unreadable, const std::string& row) const;

  [[nodiscard]] Statement Prepare(std::string_view sql) const { return file_->Prepare(sql); }
  [[nodiscard]] Statement SelectRuns(std::string_view rest) const;
  [[nodiscard]] Statement SelectStates(std::string_view rest) const;
  [[nodiscard]] Statement SelectLedger(std::string_view rest) const;

  std::unique_ptr<Connection> file_;
  // After the connection, so that they are destroyed before it. With a "+", the rows are found by their index
  // and then put in order; without it, the database would go through the whole table in that order.
  Statement all_states_ = SelectStates("ORDER BY t.Id");
  Statement one_state_ = SelectStates("WHERE t.Id = ?");
  Statement put_state_ =
      Prepare(InsertColumns("REPLACE INTO VeloAutoTaskStates", "TaskId", "?", StateColumns()));
  Statement put_version_ =
      Prepare("UPDATE VeloAutoTasks SET PlannedVersion = ?2 WHERE Id = ?1 AND PlannedVersion <> ?2");
  Statement flags_ = Prepare(
      "SELECT EXISTS (SELECT 1 FROM VeloRuns WHERE State = 'waiting' AND TaskId = ?1 "
      "AND Origin IN ('schedule', 'catch-up', 'manual') AND Attempt > 0), "
      "EXISTS (SELECT 1 FROM VeloRuns WHERE State = 'waiting' AND TaskId = ?1 "
      "AND Origin = 'schedule' AND Attempt = 0)");
  Statement unplanned_ = Prepare("SELECT Id FROM VeloAutoTasks WHERE PlannedVersion <> Version ORDER BY Id");
  Statement due_ = Prepare(
      "SELECT TaskId FROM VeloAutoTaskStates WHERE NextDue <= ?1 "
      "UNION ALL SELECT TaskId FROM VeloAutoTaskStates WHERE Planned > ?1");
  Statement insert_run_ =
      Prepare(InsertColumns("INSERT INTO VeloRuns", "Id", "NULL", RunColumns()) + " ON CONFLICT DO NOTHING");
  Statement put_run_ = Prepare(UpdateColumns("VeloRuns", "", RunColumns(), "Id = ?"));
  Statement one_run_ = SelectRuns("WHERE Id = ?");
  Statement all_runs_ = SelectRuns("ORDER BY Id");
  Statement its_runs_ = SelectRuns("WHERE TaskId = ? ORDER BY Id");
  Statement running_ = SelectRuns("WHERE State = 'running' ORDER BY +Id");
  // The first row that may begin ends the search. Runs of tasks that are gone begin as well, and end with
  // that.
  Statement to_begin_ = Prepare(
      "SELECT r.Id, r.NotBefore, r.Origin, r.Attempt, coalesce(s.RunningRun, 0), "
      "coalesce(s.Retrying, 0), s.PausedSince, coalesce(t.Held, 0) "
      "FROM VeloRuns r LEFT JOIN VeloAutoTaskStates s ON s.TaskId = r.TaskId "
      "LEFT JOIN VeloAutoTasks t ON t.Id = r.TaskId "
      "WHERE r.State = 'waiting' AND r.NotBefore <= ? ORDER BY r.NotBefore, r.Id");
  Statement put_ledger_ = Prepare(InsertColumns("REPLACE INTO VeloLedger", "TaskId", "?", LedgerColumns()));
  Statement ledger_ = SelectLedger("ORDER BY Record");
  Statement ledger_of_ = SelectLedger("AND Record = ?");
  Statement leave_in_doubt_ = Prepare(
      "UPDATE VeloLedger SET State = 'in-doubt', Reason = ? WHERE TaskId = ? AND RunId = ? AND State = 'begun'");
  Statement settings_ = Prepare(SelectColumns("Id", FileSettingsColumns(), "VeloFileSettings"));
  Statement managers_ = Prepare(SelectColumns("Number", ManagerColumns(), "VeloManagers ORDER BY Number"));
};

}  // namespace plovix
