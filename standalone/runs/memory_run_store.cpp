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

// A deleted task has no state; its waiting runs begin, and end with that.
TaskState MemoryRunStore::Known(std::int64_t task) const {
  const auto found = states_.find(task);
  return found == states_.end() ? TaskState() : found->second;
}

std::vector<TaskState> MemoryRunStore::States() {
  std::vector<TaskState> states;
  for (const TaskRecord& task : tasks_.List()) states.push_back(StateOf(task.id));
  return states;
}

std::optional<TaskState> MemoryRunStore::State(std::int64_t task) {
  if (!tasks_.Load(task)) return std::nullopt;
  return StateOf(task);
}

std::vector<std::int64_t> MemoryRunStore::Unplanned() {
  std::vector<std::int64_t> unplanned;
  std::set<std::int64_t> stored;
  for (const TaskRecord& task : tasks_.List()) {
    stored.insert(task.id);
    if (StateOf(task.id).version != task.version) unplanned.push_back(task.id);
  }
  // With a task, all that stood beside it goes, except what its runs have done.
  std::erase_if(states_, [&](const auto& entry) { return !stored.contains(entry.first); });
  std::erase_if(ledger_, [&](const auto& entry) { return !stored.contains(entry.first); });
  return unplanned;
}

std::vector<std::int64_t> MemoryRunStore::Due(Instant now) {
  std::vector<std::int64_t> due;
  for (const auto& [task, state] : states_)
    if (state.next_due && *state.next_due <= now) due.push_back(task);
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
  return &runs_.at(run.id);
}

void MemoryRunStore::Put(const RunRecord& run) {
  runs_[run.id] = run;
  run.IsOver() ? static_cast<void>(open_.erase(run.id)) : static_cast<void>(open_.insert(run.id));
  const auto found = states_.find(run.task);
  if (found == states_.end() || run.IsDry()) return;
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
    if (move.add_to_paused_row && state.paused_row != 0) {
      Put(Extended(runs_.at(state.paused_row), *row.missed));
      continue;
    }
    const RunRecord* added = Add(row);
    if (move.add_to_paused_row && added != nullptr) state.paused_row = added->id;
  }
  return true;
}

void MemoryRunStore::SetPolicies(std::int64_t task, const TaskPolicies& policies) {
  StateOf(task).policies = policies;
}

void MemoryRunStore::SetPause(std::int64_t task, const std::optional<Pause>& pause) {
  StateOf(task).paused = pause;
  if (!pause) StateOf(task).paused_row = 0;
}

void MemoryRunStore::SetPauseOfAll(const std::optional<Pause>& pause) {
  all_paused_ = pause;
  if (pause) return;
  for (auto& [task, state] : states_)
    if (!state.paused) state.paused_row = 0;
}

RunRecord MemoryRunStore::Request(RunRecord run) {
  if (tasks_.Load(run.task)) (void)StateOf(run.task);
  const RunRecord* added = Add(run);
  return added != nullptr ? *added : run;
}

bool MemoryRunStore::Cancel(std::int64_t run, Instant now, const std::string& reason) {
  const auto found = runs_.find(run);
  if (found == runs_.end() || found->second.IsOver()) return false;
  RunRecord record = found->second;
  record.cancel = true;
  record.reason = reason;
  if (record.state == RunState::kWaiting) {
    record.state = RunState::kCancelled;
    record.ended = now;
  }
  Put(record);
  return true;
}

std::optional<RunRecord> MemoryRunStore::Claim(Instant now, std::int64_t manager) {
  const RunRecord* first = nullptr;
  for (const std::int64_t id : open_) {
    const RunRecord& run = runs_.at(id);
    if (run.state != RunState::kWaiting || run.not_before > now) continue;
    if (!MayBegin(run, Known(run.task), all_paused_.has_value())) continue;
    if (first == nullptr || run.not_before < first->not_before) first = &run;
  }
  if (first == nullptr) return std::nullopt;
  RunRecord begun = Begun(*first, now, manager);
  Put(begun);
  return begun;
}

bool MemoryRunStore::IsOwner(const RunRecord& run) const {
  const auto found = runs_.find(run.id);
  return found != runs_.end() && found->second.state == RunState::kRunning &&
         found->second.epoch == run.epoch;
}

bool MemoryRunStore::Finish(const RunEnd& end) {
  RunRecord run;
  run.id = end.run;
  run.epoch = end.epoch;
  if (!IsOwner(run)) return false;
  Put(runs_.at(end.run).task, end.rows);
  Put(Ended(runs_.at(end.run), end));
  return true;
}

std::vector<RunRecord> MemoryRunStore::Orphans(const std::function<bool(std::int64_t)>& alive) {
  std::vector<RunRecord> orphans;
  for (const std::int64_t id : open_)
    if (const RunRecord& run = runs_.at(id); run.state == RunState::kRunning && !alive(run.manager))
      orphans.push_back(run);
  return orphans;
}

std::vector<RunRecord> MemoryRunStore::MarkedForCancel(std::int64_t manager) {
  std::vector<RunRecord> marked;
  for (const std::int64_t id : open_)
    if (const RunRecord& run = runs_.at(id);
        run.state == RunState::kRunning && run.cancel && run.manager == manager)
      marked.push_back(run);
  return marked;
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
  if (!IsOwner(run)) return false;
  Put(run.task, rows);
  return true;
}

bool MemoryRunStore::ClearLedger(const RunRecord& run, bool only_failed) {
  if (!IsOwner(run)) return false;
  std::erase_if(ledger_[run.task], [&](const auto& entry) {
    return !only_failed || entry.second.state == LedgerState::kFailed;
  });
  tasks_.TurnOffClearing(run.task);
  return true;
}

bool MemoryRunStore::Decide(std::int64_t task, const std::string& record, bool done) {
  const auto row = LedgerOf(task, record);
  if (!row || !IsUndecided(*row)) return false;
  if (done) {
    ledger_[task][record].state = LedgerState::kDone;
  } else {
    ledger_[task].erase(record);
  }
  return true;
}

}  // namespace plovix
