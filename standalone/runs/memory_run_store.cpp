#include "memory_run_store.h"

#include <algorithm>
#include <ranges>

#include "run_rules.h"

namespace plovix {

TaskState& MemoryRunStore::StateOf(std::int64_t task) {
  TaskState& state = states_[task];
  state.task = task;
  return state;
}

TaskState& MemoryRunStore::StateOf(const TaskRecord& task) {
  TaskState& state = StateOf(task.id);
  state.held = task.held;
  return state;
}

// A deleted task has no state; its waiting runs begin, and end with that.
TaskState MemoryRunStore::Known(std::int64_t task) const {
  const auto found = states_.find(task);
  return found == states_.end() ? TaskState() : found->second;
}

std::vector<TaskState> MemoryRunStore::States() {
  std::vector<TaskState> states;
  for (const TaskRecord& task : tasks_.List()) states.push_back(StateOf(task));
  return states;
}

std::optional<TaskState> MemoryRunStore::State(std::int64_t task) {
  const auto stored = tasks_.Load(task);
  return stored ? std::optional(StateOf(*stored)) : std::nullopt;
}

std::vector<std::int64_t> MemoryRunStore::Unplanned() {
  std::vector<std::int64_t> unplanned;
  std::set<std::int64_t> stored;
  for (const TaskRecord& task : tasks_.List()) {
    stored.insert(task.id);
    if (StateOf(task).version != task.version) unplanned.push_back(task.id);
  }
  // With a task, all that stood beside it goes, except what its runs have done.
  std::erase_if(states_, [&](const auto& entry) { return !stored.contains(entry.first); });
  std::erase_if(ledger_, [&](const auto& entry) { return !stored.contains(entry.first); });
  return unplanned;
}

std::vector<std::int64_t> MemoryRunStore::Due(Instant now) {
  std::vector<std::int64_t> due;
  for (const auto& [task, state] : states_)
    if ((state.next_due && *state.next_due <= now) || (state.planned && *state.planned > now))
      due.push_back(task);
  return due;
}

std::optional<Instant> MemoryRunStore::NextWake() {
  std::optional<Instant> wake;
  const auto consider = [&](Instant at) { wake = std::min(wake.value_or(at), at); };
  for (const auto& [task, state] : states_)
    if (state.next_due) consider(*state.next_due);
  for (const std::int64_t id : open_)
    if (const RunRecord& run = runs_.at(id);
        run.state == RunState::kWaiting && MayBegin(run, Known(run.task), all_paused_.has_value()))
      consider(run.not_before);
  return wake;
}

RunRecord* MemoryRunStore::Add(RunRecord run) {
  if (run.due && run.state != RunState::kMissed && !occurrences_.insert({run.task, *run.due}).second)
    return nullptr;
  run.id = runs_.empty() ? 1 : runs_.rbegin()->first + 1;
  Put(run);
  if (const auto found = states_.find(run.task); found != states_.end()) ++found->second.runs;
  return &runs_.at(run.id);
}

void MemoryRunStore::Put(const RunRecord& run) {
  runs_[run.id] = run;
  run.IsOver() ? static_cast<void>(open_.erase(run.id)) : static_cast<void>(open_.insert(run.id));
  const auto found = states_.find(run.task);
  if (found == states_.end() || run.IsDry()) return;
  if (run.IsOver()) LeaveInDoubt(run);
  TaskState& state = found->second;
  if (Holds(run))
    state.running_run = run.id;
  else if (state.running_run == run.id)
    state.running_run = 0;
  state.retrying = state.queued = false;
  for (const std::int64_t id : open_) {
    const RunRecord& other = runs_.at(id);
    if (other.task != run.task || other.state != RunState::kWaiting || other.IsDry()) continue;
    if (other.IsRetrying()) state.retrying = true;
    if (!other.IsRetrying() && other.origin == RunOrigin::kSchedule) state.queued = true;
  }
}

void MemoryRunStore::LeaveInDoubt(const RunRecord& run) {
  for (auto& [record, row] : ledger_[run.task]) {
    if (row.run != run.id || row.state != LedgerState::kBegun) continue;
    row.state = LedgerState::kInDoubt;
    row.reason = run.reason;
  }
}

void MemoryRunStore::Put(std::int64_t task, const std::vector<LedgerRow>& rows) {
  if (!states_.contains(task)) return;
  for (const LedgerRow& row : rows) ledger_[task][row.record] = row;
}

bool MemoryRunStore::MoveCursor(const CursorMove& move) {
  TaskState& state = StateOf(move.task);
  if (state.next_due != move.from) return false;
  state.next_due = move.to;
  state.version = move.version;
  state.schedule = move.schedule;
  state.planned = move.planned;
  for (const RunRecord& row : move.rows) {
    const auto pause = runs_.find(state.paused_row);
    if (move.add_to_paused_row && pause != runs_.end()) {
      Put(Extended(pause->second, *row.missed));
      continue;
    }
    const RunRecord* added = Add(row);
    if (move.add_to_paused_row && added != nullptr) state.paused_row = added->id;
  }
  return true;
}

void MemoryRunStore::SetPolicies(std::int64_t task, const TaskPolicies& policies, const Doer& by) {
  StateOf(task).policies = policies;
  Audit(EntryOfPolicies(task, policies, by));
}

void MemoryRunStore::SetPause(std::int64_t task, const std::optional<Pause>& pause, const Doer& by) {
  Audit(EntryOfPause(task, pause, by));
  StateOf(task).paused = pause;
  if (!pause) StateOf(task).paused_row = 0;
}

bool MemoryRunStore::Release(std::int64_t task, std::int64_t version, const Doer& by) {
  if (!tasks_.Release(task, version)) return false;
  Audit(EntryOf(Deed::kRelease, by, task, 0, std::to_string(version)));
  TaskState& state = StateOf(task);
  state.held = false;
  if (!state.paused) state.paused_row = 0;
  return true;
}

void MemoryRunStore::SetPauseOfAll(const std::optional<Pause>& pause, const Doer& by) {
  Audit(EntryOfPause(0, pause, by));
  all_paused_ = pause;
  if (pause) return;
  for (auto& [task, state] : states_)
    if (!state.IsPaused()) state.paused_row = 0;
}

RunRecord MemoryRunStore::Request(RunRecord run) {
  if (const auto task = tasks_.Load(run.task)) (void)StateOf(*task);
  const RunRecord* added = Add(run);
  if (added == nullptr) return run;
  if (!added->person.empty()) Audit(EntryOfRequest(*added));
  return *added;
}

bool MemoryRunStore::Cancel(std::int64_t run, const std::string& reason, const Doer& by) {
  const auto found = runs_.find(run);
  if (found == runs_.end() || found->second.IsOver()) return false;
  RunRecord record = found->second;
  record.cancel = true;
  record.reason = reason;
  if (record.state == RunState::kWaiting) {
    record.state = RunState::kCancelled;
    record.ended = by.at;
  }
  Put(record);
  Audit(EntryOf(Deed::kCancel, by, record.task, run));
  return true;
}

bool MemoryRunStore::CloseByForce(const RunEnd& end, const Doer& by) {
  if (!Finish(end)) return false;
  Audit(EntryOf(Deed::kCloseByForce, by, runs_.at(end.run).task, end.run));
  return true;
}

const RunRecord* MemoryRunStore::FirstToBegin(Instant until) const {
  const RunRecord* first = nullptr;
  for (const std::int64_t id : open_) {
    const RunRecord& run = runs_.at(id);
    if (run.state != RunState::kWaiting || run.not_before > until) continue;
    if (!MayBegin(run, Known(run.task), all_paused_.has_value())) continue;
    if (first == nullptr || run.not_before < first->not_before) first = &run;
  }
  return first;
}

void MemoryRunStore::BringForward(Instant now, std::chrono::seconds most) {
  for (const std::int64_t id : open_)
    if (RunRecord& run = runs_.at(id); run.state == RunState::kWaiting && run.not_before > now + most)
      run.not_before = now;
}

bool MemoryRunStore::IsOwner(std::int64_t run, std::int64_t epoch) const {
  const auto found = runs_.find(run);
  return found != runs_.end() && found->second.state == RunState::kRunning && found->second.epoch == epoch;
}

Turn MemoryRunStore::EndAndClaim(const std::vector<RunEnd>& ends, std::size_t most, Instant now,
                                 std::int64_t manager) {
  Turn turn;
  for (const RunEnd& end : ends) {
    turn.ended.push_back(IsOwner(end.run, end.epoch));
    if (!turn.ended.back()) continue;
    Put(runs_.at(end.run).task, end.rows);
    Put(Ended(runs_.at(end.run), end));
  }
  while (turn.claimed.size() < most) {
    const RunRecord* first = FirstToBegin(now);
    if (first == nullptr) break;
    turn.claimed.push_back({Begun(*first, now, manager), Known(first->task).policies});
    Put(turn.claimed.back().run);
  }
  return turn;
}

std::vector<RunRecord> MemoryRunStore::UnderWay() {
  std::vector<RunRecord> running;
  for (const std::int64_t id : open_)
    if (const RunRecord& run = runs_.at(id); run.state == RunState::kRunning) running.push_back(run);
  return running;
}

std::vector<RunRecord> MemoryRunStore::History(std::optional<std::int64_t> task) {
  std::vector<RunRecord> history;
  for (const auto& [id, run] : runs_)
    if (!task || run.task == *task) history.push_back(run);
  return history;
}

std::optional<RunRecord> MemoryRunStore::Run(std::int64_t run) {
  const auto found = runs_.find(run);
  return found == runs_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<RunRecord> MemoryRunStore::Recent(const RunFilter& filter) {
  std::vector<RunRecord> recent;
  for (const auto& [id, run] : std::views::reverse(runs_)) {
    if (recent.size() == filter.most) break;
    if (Passes(run, filter)) recent.push_back(run);
  }
  return recent;
}

std::vector<RunRecord> MemoryRunStore::LatestOfEach() {
  std::map<std::int64_t, RunRecord> latest;
  for (const auto& [id, run] : runs_)
    if (!run.IsDry()) latest[run.task] = run;
  std::vector<RunRecord> runs;
  for (auto& [task, run] : latest)
    if (tasks_.Load(task)) runs.push_back(std::move(run));
  return runs;
}

bool MemoryRunStore::Trim(std::int64_t most, std::int64_t batch) {
  const auto full =
      std::ranges::find_if(states_, [&](const auto& entry) { return entry.second.runs > most; });
  if (full == states_.end()) return false;
  std::int64_t newest = 0;
  bool success_kept = false, failure_kept = false;
  std::vector<std::int64_t> old;  // newest first
  for (const auto& [id, run] : std::views::reverse(runs_)) {
    if (run.task != full->first) continue;
    const bool is_last = (IsSuccess(run) && !std::exchange(success_kept, true)) ||
                         (IsFailure(run) && !std::exchange(failure_kept, true));
    if (++newest > most && run.IsOver() && !is_last) old.push_back(id);
  }
  const auto count = std::min(std::ssize(old), static_cast<std::ptrdiff_t>(batch));
  for (const std::int64_t id : std::views::reverse(old) | std::views::take(count)) runs_.erase(id);
  if (count == std::ssize(old)) full->second.runs = most;
  return true;
}

std::vector<LedgerRow> MemoryRunStore::Ledger(std::int64_t task) {
  std::vector<LedgerRow> rows;
  for (const auto& [record, row] : ledger_[task]) rows.push_back(row);
  return rows;
}

std::optional<LedgerRow> MemoryRunStore::LedgerOf(std::int64_t task, const std::string& record) {
  const auto& rows = ledger_[task];
  const auto found = rows.find(record);
  return found == rows.end() ? std::nullopt : std::optional(found->second);
}

std::vector<LedgerRow> MemoryRunStore::LedgerOfRun(const LedgerFilter& filter) {
  std::vector<LedgerRow> found;
  const auto& rows = ledger_[filter.task];
  for (auto row = rows.upper_bound(filter.after); row != rows.end() && found.size() < filter.most; ++row)
    if (row->second.run == filter.run && (!filter.undecided || IsUndecided(row->second)))
      found.push_back(row->second);
  return found;
}

bool MemoryRunStore::Write(const RunRecord& run, const std::vector<LedgerRow>& rows) {
  if (!IsOwner(run.id, run.epoch)) return false;
  Put(run.task, rows);
  return true;
}

bool MemoryRunStore::ClearLedger(const RunRecord& run, bool only_failed) {
  if (!IsOwner(run.id, run.epoch)) return false;
  std::erase_if(ledger_[run.task], [&](const auto& entry) {
    return !only_failed || entry.second.state == LedgerState::kFailed;
  });
  tasks_.TurnOffClearing(run.task);
  return true;
}

bool MemoryRunStore::Decide(std::int64_t task, const std::string& record, bool done, const Doer& by) {
  const auto row = LedgerOf(task, record);
  if (!row || !IsUndecided(*row)) return false;
  if (done) {
    ledger_[task][record].state = LedgerState::kDone;
  } else {
    ledger_[task].erase(record);
  }
  Audit(EntryOf(done ? Deed::kCountAsDone : Deed::kForget, by, task, row->run, record));
  return true;
}

void MemoryRunStore::Audit(AuditEntry entry) {
  entry.id = audits_.empty() ? 1 : audits_.back().id + 1;
  audits_.push_back(std::move(entry));
  if (audits_.size() > static_cast<std::size_t>(kMostAudits)) audits_.pop_front();
}

std::vector<AuditEntry> MemoryRunStore::Audits(const AuditFilter& filter) {
  std::vector<AuditEntry> found;
  for (const AuditEntry& entry : std::views::reverse(audits_)) {
    if (found.size() == filter.most) break;
    if (Passes(entry, filter)) found.push_back(entry);
  }
  return found;
}

}  // namespace plovix
