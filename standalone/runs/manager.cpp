#include "manager.h"

#include <algorithm>

#include "planner.h"

namespace plovix {

Manager::Manager(const ManagerPorts& ports, const Zone& zone, Settings settings)
    : ports_(ports), zone_(zone), settings_(std::move(settings)) {}

std::optional<Instant> Manager::Step(Instant now) {
  if (stopped_) return std::nullopt;
  // At first, and after the clock was set back, a cursor can be beyond the next occurrence.
  const bool all = !stepped_ || now < *stepped_;
  if (!draining_) Reap(now);
  bool more = true;
  for (bool first = true; more; first = false) {
    more = TakeEnds(now);
    EndWhatMust(now);
    if (draining_) continue;
    if (first && all)
      for (const TaskState& state : ports_.runs.States())
        PlanNow(ports_.tasks, ports_.runs, zone_, state.task, now);
    Plan(now);
    while (Claim(now)) more = true;
  }
  stepped_ = now;
  return NextWake(now);
}

void Manager::Stop(Instant now) {
  stopped_ = true;
  for (auto& [id, execution] : executions_) {
    const RunEnd end = execution.Stop(now);
    if (ports_.runs.Finish(end)) Tell(execution.Run(), &end);
  }
  executions_.clear();
}

bool Manager::TakeEnds(Instant now) {
  bool any = false;
  for (const ActionEnd& end : ports_.launcher.Ended(now)) {
    const auto run = executions_.find(end.run);
    if (run == executions_.end() || run->second.Run().epoch != end.epoch) continue;
    any = true;
    GoOn(run, run->second.ActionEnded(end.failure, now));
  }
  return any;
}

// Removes a run that is over.
bool Manager::GoOn(std::map<std::int64_t, Execution>::iterator run, const std::optional<RunEnd>& end) {
  if (end && ports_.runs.Finish(*end))
    Tell(run->second.Run(), &*end);  // refused if somebody else has the run by now
  if (!end && !run->second.IsLost()) return false;
  executions_.erase(run);
  return true;
}

void Manager::EndWhatMust(Instant now) {
  for (const RunRecord& marked : ports_.runs.MarkedForCancel(settings_.number)) {
    const auto run = executions_.find(marked.id);
    if (run != executions_.end()) GoOn(run, run->second.Cancel(marked.reason, now));
  }
  for (auto run = executions_.begin(); run != executions_.end();) {
    const auto next = std::next(run);
    if (const auto deadline = run->second.Deadline(); deadline && *deadline <= now)
      GoOn(run, run->second.OutOfTime(now));
    run = next;
  }
}

void Manager::Reap(Instant now) {
  const auto alive = [this](std::int64_t number) {
    return number == settings_.number || (settings_.alive && settings_.alive(number));
  };
  for (const RunRecord& run : ports_.runs.Orphans(alive)) {
    if (settings_.held && settings_.held(run.id)) continue;
    const auto state = ports_.runs.State(run.task);
    std::vector<LedgerRow> begun;
    for (const LedgerRow& row : ports_.runs.Ledger(run.task))
      if (row.run == run.id && row.state == LedgerState::kBegun) begun.push_back(row);
    const TaskPolicies policies = state ? state->policies : TaskPolicies();
    const RunEnd end = EndOfInterrupted(run, policies, std::move(begun), true, now);
    if (ports_.runs.Finish(end)) Tell(run, &end);
  }
}

void Manager::Plan(Instant now) {
  for (const std::int64_t task : ports_.runs.Unplanned())
    PlanNow(ports_.tasks, ports_.runs, zone_, task, now);
  for (const std::int64_t task : ports_.runs.Due(now)) PlanNow(ports_.tasks, ports_.runs, zone_, task, now);
}

bool Manager::Claim(Instant now) {
  if (executions_.size() >= settings_.most_runs) return false;
  auto run = ports_.runs.Claim(now, settings_.number);
  if (!run) return false;
  const auto state = ports_.runs.State(run->task);
  const std::int64_t id = run->id;
  const auto place =
      executions_.try_emplace(id, ports_, *std::move(run), state ? state->policies : TaskPolicies()).first;
  Tell(place->second.Run(), nullptr);
  GoOn(place, place->second.Begin(now));
  return true;
}

void Manager::Tell(const RunRecord& run, const RunEnd* end) const {
  if (ports_.told) ports_.told(run, end);
}

std::optional<Instant> Manager::NextWake(Instant now) {
  std::optional<Instant> wake = ports_.launcher.NextEnd();
  const auto consider = [&](const std::optional<Instant>& at) {
    if (at) wake = std::min(wake.value_or(*at), *at);
  };
  const auto next = draining_ ? std::nullopt : ports_.runs.NextWake();
  if (next && *next > now) consider(next);  // what waits for a free place wakes with an end
  for (const auto& [id, execution] : executions_) consider(execution.Deadline());
  return wake;
}

}  // namespace plovix
