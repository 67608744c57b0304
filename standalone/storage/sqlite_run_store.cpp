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
void SqliteRunStore::NoteInState(const RunRecord& run, bool added) {
  auto state = tables_->State(run.task);
  if (!state) return;
  if (added) ++state->runs;
  if (Holds(run))
    state->running_run = run.id;
  else if (state->running_run == run.id)
    state->running_run = 0;
  tables_->ReadFlags(*state);
  tables_->Put(*state);
}

void SqliteRunStore::Put(const RunRecord& run) {
  tables_->Put(run);
  if (run.IsDry()) return;
  if (run.IsOver()) tables_->LeaveInDoubt(run);
  NoteInState(run);
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
      if (added != 0) ++state->runs;
      if (move.add_to_paused_row) state->paused_row = added;
    }
    tables_->ReadFlags(*state);
    tables_->Put(*state);
    return true;
  };
  return Change(body, [&] { return State(move.task) == state; });
}

void SqliteRunStore::SetPolicies(std::int64_t task, const TaskPolicies& policies, const Doer& by) {
  ChangeState(task, [&](TaskState& state) {
    state.policies = policies;
    tables_->Add(EntryOfPolicies(task, policies, by));
  });
}

void SqliteRunStore::SetPause(std::int64_t task, const std::optional<Pause>& pause, const Doer& by) {
  ChangeState(task, [&](TaskState& state) {
    tables_->Add(EntryOfPause(task, pause, by));
    state.paused = pause;
    if (!pause) state.paused_row = 0;
  });
}

bool SqliteRunStore::Release(std::int64_t task, std::int64_t version, const Doer& by) {
  std::optional<TaskState> state;
  const auto body = [&] {
    if (!tables_->Release(task, version)) return false;
    tables_->Add(EntryOf(Deed::kRelease, by, task, 0, std::to_string(version)));
    state = tables_->State(task);
    if (!state->paused) state->paused_row = 0;
    tables_->Put(*state);
    return true;
  };
  return Change(body, [&] { return State(task) == state; });
}

void SqliteRunStore::SetPauseOfAll(const std::optional<Pause>& pause, const Doer& by) {
  ChangeSettings([&](FileSettings& settings) {
    tables_->Add(EntryOfPause(0, pause, by));
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
    NoteInState(run, run.id != 0);
    if (run.id != 0 && !run.person.empty()) tables_->Add(EntryOfRequest(run));
    return true;
  };
  Change(body, [&] { return Run(run.id) == run; });
  return run;
}

void SqliteRunStore::CancelNow(RunRecord& run, const std::string& reason, Instant now) {
  run.cancel = true;
  run.reason = reason;
  if (run.state == RunState::kWaiting) {
    run.state = RunState::kCancelled;
    run.ended = now;
  }
  Put(run);
}

bool SqliteRunStore::Cancel(std::int64_t run, const std::string& reason, const Doer& by) {
  std::optional<RunRecord> record;
  const auto body = [&] {
    record = tables_->Run(run);
    if (!record || record->IsOver()) return false;
    CancelNow(*record, reason, by.at);
    tables_->Add(EntryOf(Deed::kCancel, by, record->task, run));
    return true;
  };
  return Change(body, [&] { return Run(run) == record; });
}

// Looks first without the lock: as a rule there is nothing.
void SqliteRunStore::BringForward(Instant now, std::chrono::seconds most) {
  if (!tables_->WaitsBeyond(now + most)) return;
  const auto body = [&] {
    tables_->BringForward(now, now + most);
    return true;
  };
  Change(body, [&] { return !tables_->WaitsBeyond(now + most); });
}

bool SqliteRunStore::IsOwner(std::int64_t run, std::int64_t epoch) {
  const auto stored = tables_->Run(run);
  return stored && stored->state == RunState::kRunning && stored->epoch == epoch;
}

bool SqliteRunStore::CloseByForce(const RunEnd& end, const Doer& by) {
  return EndAndClaim({end}, 0, end.at, 0, &by).ended.front();
}

Turn SqliteRunStore::EndAndClaim(const std::vector<RunEnd>& ends, std::size_t most, Instant now,
                                 std::int64_t manager) {
  return EndAndClaim(ends, most, now, manager, nullptr);
}

// Looks first without the lock, so that managers with nothing to do keep nobody from writing.
Turn SqliteRunStore::EndAndClaim(const std::vector<RunEnd>& ends, std::size_t most, Instant now,
                                 std::int64_t manager, const Doer* by) {
  Turn turn;
  if (ends.empty() && (most == 0 || !ToBegin(now))) return turn;
  std::vector<RunRecord> changed;
  const auto put = [&](RunRecord run) {
    Put(run);
    changed.push_back(std::move(run));
  };
  const auto body = [&] {
    turn = {};
    changed.clear();
    for (const RunEnd& end : ends) {
      turn.ended.push_back(IsOwner(end.run, end.epoch));
      if (!turn.ended.back()) continue;
      RunRecord ended = Ended(tables_->Run(end.run).value(), end);
      Put(ended.task, end.rows);
      if (by != nullptr) tables_->Add(EntryOf(Deed::kCloseByForce, *by, ended.task, ended.id));
      put(std::move(ended));
    }
    while (turn.claimed.size() < most) {
      const auto first = ToBegin(now);
      if (!first) break;
      const RunRecord waiting = tables_->Run(first->id).value();
      const auto state = tables_->State(waiting.task);
      turn.claimed.push_back({Begun(waiting, now, manager), state ? state->policies : TaskPolicies()});
      put(turn.claimed.back().run);
    }
    return !changed.empty();
  };
  Change(body, [&] {
    return std::ranges::all_of(changed, [&](const RunRecord& run) { return Run(run.id) == run; });
  });
  return turn;
}

std::vector<RunRecord> SqliteRunStore::UnderWay() {
  return tables_->Running();
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

bool SqliteRunStore::Trim(std::int64_t most, std::int64_t batch) {
  if (!tables_->TaskWithMoreRuns(most)) return false;
  std::optional<TaskState> state;
  const auto body = [&] {
    const auto task = tables_->TaskWithMoreRuns(most);
    state = task ? tables_->State(*task) : std::nullopt;
    if (!state) return false;
    if (tables_->TrimRuns(*task, most, batch) < batch) state->runs = most;
    tables_->Put(*state);
    return true;
  };
  return Change(body, [&] { return State(state->task) == state; });
}

std::vector<LedgerRow> SqliteRunStore::Ledger(std::int64_t task) {
  return tables_->Ledger(task);
}

std::optional<LedgerRow> SqliteRunStore::LedgerOf(std::int64_t task, const std::string& record) {
  return tables_->LedgerOf(task, record);
}

std::vector<LedgerRow> SqliteRunStore::LedgerOfRun(const LedgerFilter& filter) {
  return tables_->LedgerOfRun(filter);
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

bool SqliteRunStore::Decide(std::int64_t task, const std::string& record, bool done, const Doer& by) {
  const auto body = [&] {
    auto row = LedgerOf(task, record);
    if (!row || !IsUndecided(*row)) return false;
    row->state = LedgerState::kDone;
    if (done) {
      tables_->Put(task, *row);
    } else {
      tables_->Forget(task, record);
    }
    tables_->Add(EntryOf(done ? Deed::kCountAsDone : Deed::kForget, by, task, row->run, record));
    return true;
  };
  return Change(body, [&] {
    const auto row = LedgerOf(task, record);
    return done ? row && row->state == LedgerState::kDone : !row;
  });
}

void SqliteRunStore::Audit(AuditEntry entry) {
  const auto body = [&] {
    entry.id = tables_->Add(entry);
    return true;
  };
  Change(body, [&] {
    const auto newest = Audits({.task = {}, .before = entry.id + 1, .most = 1});
    return !newest.empty() && newest.front() == entry;
  });
}

std::vector<AuditEntry> SqliteRunStore::Audits(const AuditFilter& filter) {
  return tables_->Audits(filter);
}

std::vector<ManagerRecord> SqliteRunStore::Managers() {
  return tables_->Managers();
}

void SqliteRunStore::ChangeManagers(const std::optional<ManagerRecord>& added,
                                    const std::vector<std::int64_t>& gone) {
  const auto body = [&] {
    for (const std::int64_t number : gone) tables_->RemoveManager(number);
    if (added) tables_->Add(*added);
    return true;
  };
  Change(body, [&] {
    const auto stored = tables_->Managers();
    return (!added || std::ranges::find(stored, *added) != stored.end()) &&
           std::ranges::none_of(gone, [&](std::int64_t number) {
             return std::ranges::find(stored, number, &ManagerRecord::number) != stored.end();
           });
  });
}

const std::string& SqliteRunStore::Path() const {
  return tables_->File().Path();
}

void SqliteRunStore::OnWritten(std::function<void()> told) {
  tables_->File().OnWritten(std::move(told));
}

}  // namespace plovix
