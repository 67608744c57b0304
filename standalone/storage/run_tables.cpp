#include "run_tables.h"

#include <plovix/standalone/runs/run_rules.h>

#include <algorithm>
#include <limits>

#include "column_values.h"
#include "task_columns.h"

namespace plovix {
namespace {

// The oldest ?3 runs of the task ?1 beyond the newest ?2. One that ended well or badly is the last one of its
// kind if no newer one did; as a rule, that is found a few rows further.
constexpr std::string_view kTrim =
    "DELETE FROM VeloRuns WHERE Id IN (SELECT r.Id FROM VeloRuns r WHERE r.TaskId = ?1 "
    "AND r.Id < (SELECT Id FROM VeloRuns WHERE TaskId = ?1 ORDER BY Id DESC LIMIT 1 OFFSET ?2 - 1) "
    "AND r.State NOT IN ('waiting', 'running') "
    "AND NOT (r.State = 'succeeded' AND r.Origin <> 'dry-run' AND NOT EXISTS (SELECT 1 FROM VeloRuns n "
    "WHERE n.TaskId = ?1 AND n.Id > r.Id AND n.State = 'succeeded' AND n.Origin <> 'dry-run')) "
    "AND NOT (r.State IN ('failed', 'partly') AND r.Origin <> 'dry-run' AND NOT EXISTS (SELECT 1 "
    "FROM VeloRuns n WHERE n.TaskId = ?1 AND n.Id > r.Id AND n.State IN ('failed', 'partly') "
    "AND n.Origin <> 'dry-run')) ORDER BY r.Id LIMIT ?3)";
// What ClearLedger deletes of the task ?1; ?2: only what failed.
constexpr std::string_view kCleared = "FROM VeloLedger WHERE TaskId = ?1 AND (?2 = 0 OR State = 'failed')";

// "AND State IN (...)", so that runs in other states are passed over without being read.
std::string InOneOf(const std::vector<RunState>& states) {
  std::string names;
  for (const RunState state : states)
    names += (names.empty() ? "'" : ", '") + std::string(kRunStateNames.at(IndexOf(state))) + "'";
  return names.empty() ? "" : "AND State IN (" + names + ") ";
}

}  // namespace

Statement RunTables::SelectRuns(std::string_view rest) const {
  return Prepare(SelectColumns("Id", RunColumns(), "VeloRuns " + std::string(rest)));
}

Statement RunTables::SelectStates(std::string_view rest) const {
  return Prepare(SelectColumns(
      "t.Id, t.PlannedVersion, t.Held, s.TaskId", StateColumns(),
      "VeloAutoTasks t LEFT JOIN VeloAutoTaskStates s ON s.TaskId = t.Id " + std::string(rest)));
}

Statement RunTables::SelectLedger(std::string_view rest) const {
  return Prepare(
      SelectColumns("TaskId", LedgerColumns(), "VeloLedger WHERE TaskId = ? " + std::string(rest)));
}

void RunTables::CheckReadable(std::string_view unreadable, const std::string& row) const {
  if (unreadable.empty()) return;
  file_->Refuse(failure_number::kInvalidFormat, row + " holds an unreadable " + std::string(unreadable));
}

std::vector<std::int64_t> RunTables::Ids(Statement& statement) {
  std::vector<std::int64_t> ids;
  statement.ForEachRow([&](const Statement& row) { ids.push_back(row.Integer(0)); });
  return ids;
}

std::vector<TaskState> RunTables::ReadStates(Statement& statement) {
  std::vector<TaskState> states;
  statement.ForEachRow([&](const Statement& row) {
    TaskState& state = states.emplace_back();
    state.task = row.Integer(0);
    state.version = row.Integer(1);
    state.held = row.Integer(2) != 0;
    if (IsNull(row, 3)) return;
    CheckReadable(ReadColumns(state, StateColumns(), row, 4),
                  "the state of task " + std::to_string(state.task));
  });
  return states;
}

std::vector<TaskState> RunTables::States() {
  return ReadStates(all_states_);
}

std::optional<TaskState> RunTables::State(std::int64_t task) {
  one_state_.BindInteger(0, task);
  auto states = ReadStates(one_state_);
  return states.empty() ? std::nullopt : std::optional(std::move(states.front()));
}

void RunTables::Put(const TaskState& state) {
  put_state_.BindInteger(0, state.task);
  BindColumns(put_state_, 1, StateColumns(), state);
  put_state_.Run();
  put_version_.BindInteger(0, state.task);
  put_version_.BindInteger(1, state.version);
  put_version_.Run();
}

void RunTables::ReadFlags(TaskState& state) {
  flags_.BindInteger(0, state.task);
  flags_.ForEachRow([&](const Statement& row) {
    state.retrying = row.Integer(0) != 0;
    state.queued = row.Integer(1) != 0;
  });
}

void RunTables::ForgetPausedRows() {
  file_->Run(
      "UPDATE VeloAutoTaskStates SET PausedRow = 0 WHERE PausedSince IS NULL AND PausedRow <> 0 "
      "AND NOT EXISTS (SELECT 1 FROM VeloAutoTasks WHERE Id = TaskId AND Held <> 0)");
}

std::vector<std::int64_t> RunTables::Due(Instant now) {
  ToFile{due_, 0}(now);
  auto due = Ids(due_);
  std::ranges::sort(due);  // the database would read the whole table in that order
  due.erase(std::ranges::unique(due).begin(), due.end());
  return due;
}

std::optional<Instant> RunTables::FirstDue() {
  const auto due = file_->Integer(
      "SELECT NextDue FROM VeloAutoTaskStates WHERE NextDue IS NOT NULL ORDER BY NextDue LIMIT 1");
  return due ? std::optional(Instant(std::chrono::seconds(*due))) : std::nullopt;
}

std::int64_t RunTables::Insert(const RunRecord& run) {
  BindColumns(insert_run_, 0, RunColumns(), run);
  insert_run_.Run();
  return file_->ChangedRows() == 1 ? file_->LastInsertId() : 0;
}

void RunTables::Put(const RunRecord& run) {
  put_run_.BindInteger(BindColumns(put_run_, 0, RunColumns(), run), run.id);
  put_run_.Run();
}

RunRecord RunTables::RunIn(const Statement& row) const {
  RunRecord run;
  run.id = row.Integer(0);
  CheckReadable(ReadColumns(run, RunColumns(), row, 1), "run " + std::to_string(run.id));
  return run;
}

std::vector<RunRecord> RunTables::Runs(Statement& statement) const {
  std::vector<RunRecord> runs;
  statement.ForEachRow([&](const Statement& row) { runs.push_back(RunIn(row)); });
  return runs;
}

// Rows that do not pass are read over; an index for each filter would cost more at every end of a run.
std::vector<RunRecord> RunTables::Recent(const RunFilter& filter) {
  Statement recent = SelectRuns((filter.task ? "WHERE TaskId = ?2 AND Id < ?1 " : "WHERE Id < ?1 ") +
                                InOneOf(filter.states) + "ORDER BY Id DESC LIMIT ?3");
  recent.BindInteger(2, static_cast<std::int64_t>(filter.most));
  recent.BindInteger(0, filter.before.value_or(std::numeric_limits<std::int64_t>::max()));
  if (filter.task) recent.BindInteger(1, *filter.task);
  return Runs(recent);
}

// Looks each task's newest run up, whatever the number of older ones.
std::vector<RunRecord> RunTables::LatestOfEach() {
  Statement latest = SelectRuns(
      "WHERE Id IN (SELECT (SELECT r.Id FROM VeloRuns r WHERE r.TaskId = t.Id AND r.Origin <> 'dry-run' "
      "ORDER BY r.Id DESC LIMIT 1) FROM VeloAutoTasks t) ORDER BY TaskId");
  return Runs(latest);
}

std::optional<RunRecord> RunTables::Run(std::int64_t run) {
  one_run_.BindInteger(0, run);
  auto runs = Runs(one_run_);
  return runs.empty() ? std::nullopt : std::optional(std::move(runs.front()));
}

std::vector<RunRecord> RunTables::History(std::optional<std::int64_t> task) {
  if (!task) return Runs(all_runs_);
  its_runs_.BindInteger(0, *task);
  return Runs(its_runs_);
}

bool RunTables::WaitsBeyond(Instant at) const {
  Statement waits = Prepare("SELECT 1 FROM VeloRuns WHERE State = 'waiting' AND NotBefore > ? LIMIT 1");
  ToFile{waits, 0}(at);
  return waits.Step();
}

void RunTables::BringForward(Instant now, Instant at) const {
  Statement bring = Prepare("UPDATE VeloRuns SET NotBefore = ? WHERE State = 'waiting' AND NotBefore > ?");
  ToFile{bring, 0}(now);
  ToFile{bring, 1}(at);
  bring.Run();
}

std::vector<RunRecord> RunTables::AskedFor() const {
  Statement asked =
      SelectRuns("WHERE State IN ('waiting', 'running') AND Origin IN ('manual', 'dry-run') ORDER BY Id");
  return Runs(asked);
}

std::optional<RunRecord> RunTables::FirstToBegin(Instant until, bool all_paused) {
  std::optional<RunRecord> first;
  ToFile{to_begin_, 0}(until);
  while (!first && to_begin_.Step()) {
    RunRecord run;
    TaskState task;
    run.id = to_begin_.Integer(0);
    const bool fits = FromFile{to_begin_, 1}(run.not_before) && FromFile{to_begin_, 2}(run.origin) &&
                      FromFile{to_begin_, 3}(run.attempt) && FromFile{to_begin_, 4}(task.running_run) &&
                      FromFile{to_begin_, 5}(task.retrying);
    if (!IsNull(to_begin_, 6)) task.paused.emplace();
    task.held = to_begin_.Integer(7) != 0;
    if (fits && MayBegin(run, task, all_paused)) first = std::move(run);
  }
  to_begin_.Reset();
  return first;
}

// With the number in the text, so that the index of the tasks that have more can be used.
std::optional<std::int64_t> RunTables::TaskWithMoreRuns(std::int64_t most) const {
  return file_->Integer("SELECT TaskId FROM VeloAutoTaskStates WHERE Runs > " + std::to_string(most) +
                        " LIMIT 1");
}

std::int64_t RunTables::TrimRuns(std::int64_t task, std::int64_t most, std::int64_t batch) {
  Statement trim = Prepare(kTrim);
  trim.BindInteger(0, task);
  trim.BindInteger(1, most);
  trim.BindInteger(2, batch);
  trim.Run();
  return file_->ChangedRows();
}

void RunTables::Put(std::int64_t task, const LedgerRow& row) {
  put_ledger_.BindInteger(0, task);
  BindColumns(put_ledger_, 1, LedgerColumns(), row);
  put_ledger_.Run();
}

std::vector<LedgerRow> RunTables::ReadLedger(Statement& statement) {
  std::vector<LedgerRow> rows;
  statement.ForEachRow([&](const Statement& row) {
    CheckReadable(ReadColumns(rows.emplace_back(), LedgerColumns(), row, 1),
                  "the ledger of task " + std::to_string(row.Integer(0)));
  });
  return rows;
}

std::vector<LedgerRow> RunTables::Ledger(std::int64_t task) {
  ledger_.BindInteger(0, task);
  return ReadLedger(ledger_);
}

std::optional<LedgerRow> RunTables::LedgerOf(std::int64_t task, const std::string& record) {
  ledger_of_.BindInteger(0, task);
  ledger_of_.BindText(1, record);
  auto rows = ReadLedger(ledger_of_);
  return rows.empty() ? std::nullopt : std::optional(std::move(rows.front()));
}

void RunTables::LeaveInDoubt(const RunRecord& run) {
  leave_in_doubt_.BindText(0, run.reason);
  leave_in_doubt_.BindInteger(1, run.task);
  leave_in_doubt_.BindInteger(2, run.id);
  leave_in_doubt_.Run();
}

std::vector<LedgerRow> RunTables::LedgerOfRun(const LedgerFilter& filter) {
  Statement of_run = SelectLedger(
      "AND Record > ?2 AND RunId = ?3 AND (?4 = 0 OR State IN ('failed', 'in-doubt')) ORDER BY Record LIMIT ?5");
  of_run.BindInteger(0, filter.task);
  of_run.BindText(1, filter.after);
  of_run.BindInteger(2, filter.run);
  of_run.BindInteger(3, filter.undecided ? 1 : 0);
  of_run.BindInteger(4, static_cast<std::int64_t>(filter.most));
  return ReadLedger(of_run);
}

void RunTables::Forget(std::int64_t task, const std::string& record) {
  Statement forget = Prepare("DELETE FROM VeloLedger WHERE TaskId = ? AND Record = ?");
  forget.BindInteger(0, task);
  forget.BindText(1, record);
  forget.Run();
}

void RunTables::ClearLedger(std::int64_t task, bool only_failed) {
  Statement clear = Prepare("DELETE " + std::string(kCleared));
  clear.BindInteger(0, task);
  clear.BindInteger(1, only_failed ? 1 : 0);
  clear.Run();
  Statement turn_off = Prepare(kTurnOffClearing);
  turn_off.BindInteger(0, task);
  turn_off.Run();
}

bool RunTables::Release(std::int64_t task, std::int64_t version) {
  Statement release = Prepare(kEndHold);
  release.BindInteger(0, task);
  release.BindInteger(1, version);
  release.Run();
  return file_->ChangedRows() == 1;
}

bool RunTables::IsCleared(std::int64_t task, bool only_failed) {
  Statement left = Prepare("SELECT 1 " + std::string(kCleared) +
                           " UNION ALL SELECT 1 FROM VeloAutoTasks WHERE Id = ?1 "
                           "AND (ProcessAllRecords <> 0 OR ProcessFailedRecords <> 0)");
  left.BindInteger(0, task);
  left.BindInteger(1, only_failed ? 1 : 0);
  return !left.Step();
}

std::int64_t RunTables::Add(const AuditEntry& entry) {
  Statement insert = Prepare(InsertColumns("INSERT INTO VeloAudit", "Id", "NULL", AuditColumns()));
  BindColumns(insert, 0, AuditColumns(), entry);
  insert.Run();
  const std::int64_t id = file_->LastInsertId();
  Statement forget = Prepare("DELETE FROM VeloAudit WHERE Id <= ?");
  forget.BindInteger(0, id - kMostAudits);
  forget.Run();
  return id;
}

std::vector<AuditEntry> RunTables::Audits(const AuditFilter& filter) {
  Statement entries = Prepare(SelectColumns("Id", AuditColumns(), "VeloAudit WHERE Id < ? ORDER BY Id DESC"));
  entries.BindInteger(0, filter.before.value_or(std::numeric_limits<std::int64_t>::max()));
  std::vector<AuditEntry> found;
  while (found.size() < filter.most && entries.Step()) {
    AuditEntry entry;
    entry.id = entries.Integer(0);
    CheckReadable(ReadColumns(entry, AuditColumns(), entries, 1),
                  "what people did, entry " + std::to_string(entry.id) + ",");
    if (Passes(entry, filter)) found.push_back(std::move(entry));
  }
  return found;
}

std::vector<ManagerRecord> RunTables::Managers() {
  std::vector<ManagerRecord> managers;
  managers_.ForEachRow([&](const Statement& row) {
    ManagerRecord& manager = managers.emplace_back();
    manager.number = row.Integer(0);
    CheckReadable(ReadColumns(manager, ManagerColumns(), row, 1),
                  "the row of manager " + std::to_string(manager.number));
  });
  return managers;
}

void RunTables::Add(const ManagerRecord& manager) {
  Statement add = Prepare(InsertColumns("REPLACE INTO VeloManagers", "Number", "?", ManagerColumns()));
  add.BindInteger(0, manager.number);
  BindColumns(add, 1, ManagerColumns(), manager);
  add.Run();
}

void RunTables::RemoveManager(std::int64_t number) {
  Statement remove = Prepare("DELETE FROM VeloManagers WHERE Number = ?");
  remove.BindInteger(0, number);
  remove.Run();
}

FileSettings RunTables::Settings() {
  FileSettings settings;
  bool found = false;
  settings_.ForEachRow([&](const Statement& row) {
    found = true;
    CheckReadable(ReadColumns(settings, FileSettingsColumns(), row, 1), "the row of settings");
  });
  CheckReadable(found ? "" : "row of settings", "the file");
  return settings;
}

void RunTables::Put(const FileSettings& settings) {
  Statement put = Prepare(UpdateColumns("VeloFileSettings", "", FileSettingsColumns(), "Id = 1"));
  BindColumns(put, 0, FileSettingsColumns(), settings);
  put.Run();
}

}  // namespace plovix
