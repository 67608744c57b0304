#include "sqlite_run_store.h"

#include <plovix/standalone/runs/run_rules.h>

#include <algorithm>
#include <utility>

#include "run_tables.h"

namespace plovix {

SqliteRunStore::SqliteRunStore(const std::string& path, std::chrono::milliseconds patience)
    : tables_(std::make_unique<RunTables>(path, patience)) {}

SqliteRunStore::~SqliteRunStore() = default;

bool SqliteRunStore::Change(const std::function<bool()>& body, const std::function<bool()>& arrived) {
  bool changed = false;
  tables_->File().Write([&] { changed = body(); }, [&] { return !changed || arrived(); });
  if (changed) ++own_changes_;
  return changed;
}

void SqliteRunStore::ChangeState(std::int64_t task, const std::function<void(TaskState&)>& change) {
  std::optional<TaskState> state;
  const auto body = [&] {
    state = tables_->State(task);
    if (!state) return false;
    change(*state);
    tables_->Put(*state);
    return true;
  };
  Change(body, [&] { return State(task) == state; });
}

void SqliteRunStore::ChangeSettings(const std::function<void(FileSettings&)>& change) {
  FileSettings settings;
  const auto body = [&] {
    settings = tables_->Settings();
    change(settings);
    tables_->Put(settings);
    return true;
  };
  Change(body, [&] { return tables_->Settings() == settings; });
}

// The state of a task that had none is stored with its first run, so that every run to begin has one.
void SqliteRunStore::NoteInState(const RunRecord& run) {
  auto state = tables_->State(run.task);
  if (!state) return;
  if (Holds(run))
    state->running_run = run.id;
  else if (state->running_run == run.id)
    state->running_run = 0;
  tables_->ReadFlags(*state);
  tables_->Put(*state);
}

void SqliteRunStore::Put(const RunRecord& run) {
  tables_->Put(run);
  if (!run.IsDry()) NoteInState(run);
}

void SqliteRunStore::Put(std::int64_t task, const std::vector<LedgerRow>& rows) {
  if (rows.empty() || !tables_->State(task)) return;
  for (const LedgerRow& row : rows) tables_->Put(task, row);
}

std::vector<TaskState> SqliteRunStore::States() {
  return tables_->States();
}

std::optional<TaskState> SqliteRunStore::State(std::int64_t task) {
  return tables_->State(task);
}

std::vector<std::int64_t> SqliteRunStore::Unplanned() {
  return tables_->Unplanned();
}

std::vector<std::int64_t> SqliteRunStore::Due(Instant now) {
  return tables_->Due(now);
}

std::optional<RunRecord> SqliteRunStore::ToBegin(Instant until) {
  return tables_->FirstToBegin(until, tables_->Settings().paused.has_value());
}

std::optional<Instant> SqliteRunStore::NextWake() {
  std::optional<Instant> wake;
  tables_->File().Read([&] {
    wake = tables_->FirstDue();
    if (const auto run = ToBegin(Instant::max()))
      wake = std::min(wake.value_or(run->not_before), run->not_before);
  });
  return wake;
}

bool SqliteRunStore::MoveCursor(const CursorMove& move) {
  std::optional<TaskState> state;
  const auto body = [&] {
    state = tables_->State(move.task);
    if (!state || state->next_due != move.from) return false;
    state->next_due = move.to;
    state->version = move.version;
    state->schedule = move.schedule;
    state->planned = move.planned;
    for (const RunRecord& row : move.rows) {
      const auto pause = move.add_to_paused_row ? tables_->Run(state->paused_row) : std::nullopt;
      if (pause) {
        tables_->Put(Extended(*pause, row.missed.value()));
        continue;
      }
      const std::int64_t added = tables_->Insert(row);
      if (move.add_to_paused_row) state->paused_row = added;
    }
    tables_->ReadFlags(*state);
    tables_->Put(*state);
    return true;
  };
  return Change(body, [&] { return State(move.task) == state; });
}

void SqliteRunStore::SetPolicies(std::int64_t task, const TaskPolicies& policies) {
  ChangeState(task, [&](TaskState& state) { state.policies = policies; });
}

void SqliteRunStore::SetPause(std::int64_t task, const std::optional<Pause>& pause) {
  ChangeState(task, [&](TaskState& state) {
    state.paused = pause;
    if (!pause) state.paused_row = 0;
  });
}

void SqliteRunStore::SetPauseOfAll(const std::optional<Pause>& pause) {
  ChangeSettings([&](FileSettings& settings) {
    settings.paused = pause;
    if (!pause) tables_->ForgetPausedRows();
  });
}

std::optional<Pause> SqliteRunStore::PauseOfAll() {
  return tables_->Settings().paused;
}

RunRecord SqliteRunStore::Request(RunRecord run) {
  const auto body = [&] {
    run.id = tables_->Insert(run);
    NoteInState(run);
    return true;
  };
  Change(body, [&] { return Run(run.id) == run; });
  return run;
}

bool SqliteRunStore::Cancel(std::int64_t run, Instant now, const std::string& reason) {
  std::optional<RunRecord> record;
  const auto body = [&] {
    record = tables_->Run(run);
    if (!record || record->IsOver()) return false;
    record->cancel = true;
    record->reason = reason;
    if (record->state == RunState::kWaiting) {
      record->state = RunState::kCancelled;
      record->ended = now;
    }
    Put(*record);
    return true;
  };
  return Change(body, [&] { return Run(run) == record; });
}

// Looks first without the lock, so that managers with nothing to do keep nobody from writing.
std::optional<RunRecord> SqliteRunStore::Claim(Instant now, std::int64_t manager) {
  if (!ToBegin(now)) return std::nullopt;
  std::optional<RunRecord> begun;
  const auto body = [&] {
    const auto first = ToBegin(now);
    if (!first) return false;
    begun = Begun(tables_->Run(first->id).value(), now, manager);
    Put(*begun);
    return true;
  };
  Change(body, [&] { return Run(begun->id) == begun; });
  return begun;
}

bool SqliteRunStore::IsOwner(std::int64_t run, std::int64_t epoch) {
  const auto stored = tables_->Run(run);
  return stored && stored->state == RunState::kRunning && stored->epoch == epoch;
}

bool SqliteRunStore::Finish(const RunEnd& end) {
  RunRecord ended;
  const auto body = [&] {
    if (!IsOwner(end.run, end.epoch)) return false;
    ended = Ended(tables_->Run(end.run).value(), end);
    Put(ended.task, end.rows);
    Put(ended);
    return true;
  };
  return Change(body, [&] { return Run(end.run) == ended; });
}

std::vector<RunRecord> SqliteRunStore::Orphans(const std::function<bool(std::int64_t)>& alive) {
  std::vector<RunRecord> orphans = tables_->Running();
  std::erase_if(orphans, [&](const RunRecord& run) { return alive(run.manager); });
  return orphans;
}

std::vector<RunRecord> SqliteRunStore::MarkedForCancel(std::int64_t manager) {
  return tables_->MarkedForCancel(manager);
}

// The database counts what others have written. Both numbers only grow, so their sum is another one whenever
// one of them is.
std::int64_t SqliteRunStore::ChangeCount() {
  return own_changes_ + tables_->File().Integer("PRAGMA data_version").value_or(0);
}

std::vector<RunRecord> SqliteRunStore::History(std::optional<std::int64_t> task) {
  return tables_->History(task);
}

std::optional<RunRecord> SqliteRunStore::Run(std::int64_t run) {
  return tables_->Run(run);
}

std::vector<RunRecord> SqliteRunStore::Recent(const RunFilter& filter) {
  return tables_->Recent(filter);
}

std::vector<RunRecord> SqliteRunStore::LatestOfEach() {
  return tables_->LatestOfEach();
}

std::vector<LedgerRow> SqliteRunStore::Ledger(std::int64_t task) {
  return tables_->Ledger(task);
}

std::optional<LedgerRow> SqliteRunStore::LedgerOf(std::int64_t task, const std::string& record) {
  return tables_->LedgerOf(task, record);
}

bool SqliteRunStore::Write(const RunRecord& run, const std::vector<LedgerRow>& rows) {
  const auto body = [&] {
    if (!IsOwner(run.id, run.epoch)) return false;
    Put(run.task, rows);
    return true;
  };
  return Change(body, [&] {
    return std::ranges::all_of(rows,
                               [&](const LedgerRow& row) { return LedgerOf(run.task, row.record) == row; });
  });
}

bool SqliteRunStore::ClearLedger(const RunRecord& run, bool only_failed) {
  const auto body = [&] {
    if (!IsOwner(run.id, run.epoch)) return false;
    tables_->ClearLedger(run.task, only_failed);
    return true;
  };
  return Change(body, [&] { return tables_->IsCleared(run.task, only_failed); });
}

bool SqliteRunStore::Decide(std::int64_t task, const std::string& record, bool done) {
  const auto body = [&] {
    auto row = LedgerOf(task, record);
    if (!row || !IsUndecided(*row)) return false;
    row->state = LedgerState::kDone;
    if (done) {
      tables_->Put(task, *row);
    } else {
      tables_->Forget(task, record);
    }
    return true;
  };
  return Change(body, [&] {
    const auto row = LedgerOf(task, record);
    return done ? row && row->state == LedgerState::kDone : !row;
  });
}

std::string SqliteRunStore::FileId() {
  return tables_->Settings().id;
}

std::string SqliteRunStore::ZoneName() {
  return tables_->Settings().zone;
}

void SqliteRunStore::SetZone(const std::string& name) {
  ChangeSettings([&](FileSettings& settings) { settings.zone = name; });
}

Zone SqliteRunStore::ScheduleZone() {
  if (ZoneName().empty()) SetZone(Zone::Local().Name());
  auto zone = Zone::Named(ZoneName());
  if (!zone) {
    tables_->File().Refuse(
        failure_number::kInvalidFormat,
        "its schedules are in the time zone \"" + ZoneName() + "\", which this machine does not know");
  }
  return *std::move(zone);
}

// After a failure the number may be given away or not; nobody has it then.
std::int64_t SqliteRunStore::NewManager() {
  std::int64_t number = 0;
  ChangeSettings([&](FileSettings& settings) { number = ++settings.last_manager; });
  return number;
}

const std::string& SqliteRunStore::Path() const {
  return tables_->File().Path();
}

void SqliteRunStore::OnWritten(std::function<void()> told) {
  tables_->File().OnWritten(std::move(told));
}

}  // namespace plovix
