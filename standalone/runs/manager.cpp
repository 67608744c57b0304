#include "manager.h"

#include <algorithm>

#include "planner.h"

namespace plovix {

Manager::Manager(const ManagerPorts& ports, const Zone& zone, Settings settings)
    : ports_(ports), zone_(zone), settings_(std::move(settings)) {}

std::optional<Instant> Manager::Step(Instant now) {
  if (stopped_) return std::nullopt;
  // What was put off before the clock was set back does not wait for its time to come again.
  if (!draining_ && (!stepped_ || now < *stepped_)) ports_.runs.BringForward(now, kLongestDelay);
  bool claimed = false;
  for (bool more = true; more;) {
    const auto own = LookAtRunning(now);
    TakeEnds(now);
    EndWhatMust(own, now);
    // What comes due has to find the runs ended that are over.
    if (const auto tasks = draining_ ? std::vector<std::int64_t>() : ToPlan(now); !tasks.empty()) {
      EndAndClaim(0, now);
      Plan(tasks, now);
    }
    more = EndAndClaim(draining_ ? 0 : settings_.most_runs, now);
    claimed = claimed || more;
  }
  stepped_ = now;
  const auto wake = NextWake(now);
  if (draining_ || claimed || !ports_.runs.Trim(kMostRunsOfTask, kTrimmedAtOnce)) return wake;
  return std::min(wake.value_or(Instant::max()), now + std::chrono::seconds{1});
}

void Manager::Stop(Instant now) {
  stopped_ = true;
  for (auto& [id, place] : places_)
    if (!place.end) place.end = place.execution.Stop(now);
  EndAndClaim(0, now);
}

// An end stays in the list until its run has gone on from it.
void Manager::TakeEnds(Instant now) {
  for (ActionEnd& end : ports_.launcher.Ended(now)) action_ends_.push_back(std::move(end));
  while (!action_ends_.empty()) {
    const ActionEnd end = std::move(action_ends_.front());
    action_ends_.erase(action_ends_.begin());
    const auto found = places_.find(end.run);
    if (found == places_.end() || found->second.end || found->second.execution.Run().epoch != end.epoch)
      continue;
    found->second.end = found->second.execution.ActionEnded(end.failure, now);
    ForgetIfLost(found);
  }
}

void Manager::ForgetIfLost(Places::iterator place) {
  if (place->second.execution.IsLost()) places_.erase(place);
}

// Compares what this manager does with what the store says of it: a run may have been closed by a person, or
// taken over; and a claim whose commit seemed to fail may have arrived. Returns this manager's runs.
std::map<std::int64_t, RunRecord> Manager::LookAtRunning(Instant now) {
  std::map<std::int64_t, RunRecord> own;
  for (RunRecord& run : ports_.runs.UnderWay()) {
    const bool mine = run.manager == settings_.number;
    const bool alive = mine ? places_.contains(run.id) : settings_.alive && settings_.alive(run.manager);
    const bool held = settings_.held && settings_.held(run.id);
    if (!alive && !held && !draining_) Reap(run, now);
    if (mine && alive) own.emplace(run.id, std::move(run));
  }
  for (auto at = places_.begin(); at != places_.end();) {
    const auto place = at++;
    const auto run = own.find(place->first);
    if (run != own.end() && run->second.epoch == place->second.execution.Run().epoch) continue;
    ports_.launcher.Stop(place->first);
    places_.erase(place);
  }
  return own;
}

void Manager::EndWhatMust(const std::map<std::int64_t, RunRecord>& own, Instant now) {
  for (auto& [id, place] : places_) {
    if (place.end) continue;
    const auto run = own.find(id);
    const auto deadline = place.execution.Deadline();
    if (run != own.end() && run->second.cancel)
      place.end = place.execution.Cancel(run->second.reason, now);
    else if (deadline && *deadline <= now)
      place.end = place.execution.OutOfTime(now);
  }
}

void Manager::Reap(const RunRecord& run, Instant now) {
  const auto state = ports_.runs.State(run.task);
  const TaskPolicies policies = state ? state->policies : TaskPolicies();
  const RunEnd end = EndOfInterrupted(run, policies, true, now);
  if (ports_.runs.Finish(end)) Tell(run, &end);
}

std::vector<std::int64_t> Manager::ToPlan(Instant now) {
  std::vector<std::int64_t> tasks = ports_.runs.Unplanned();
  const std::vector<std::int64_t> due = ports_.runs.Due(now);
  tasks.insert(tasks.end(), due.begin(), due.end());
  std::ranges::sort(tasks);
  tasks.erase(std::ranges::unique(tasks).begin(), tasks.end());
  return tasks;
}

void Manager::Plan(const std::vector<std::int64_t>& tasks, Instant now) {
  for (const std::int64_t task : tasks) PlanNow(ports_.tasks, ports_.runs, zone_, task, now);
}

// Stores all ends and takes what can begin, in one commit. Returns whether something else can happen now.
bool Manager::EndAndClaim(std::size_t most, Instant now) {
  std::vector<RunEnd> ends;
  for (const auto& [id, place] : places_)
    if (place.end) ends.push_back(*place.end);
  const std::size_t busy = places_.size() - ends.size();
  const std::size_t free = most - std::min(most, busy);
  if (ends.empty() && free == 0) return false;
  Turn turn = ports_.runs.EndAndClaim(ends, free, now, settings_.number);
  for (std::size_t i = 0; i < ends.size(); ++i) {
    const auto place = places_.find(ends[i].run);
    if (turn.ended[i]) Tell(place->second.execution.Run(), &ends[i]);
    places_.erase(place);
  }
  std::vector<Places::iterator> begun;
  for (auto& [run, policies] : turn.claimed) {
    const std::int64_t id = run.id;
    begun.push_back(places_.try_emplace(id, Place{Execution(ports_, std::move(run), policies), {}}).first);
  }
  for (const auto& place : begun) {
    Tell(place->second.execution.Run(), nullptr);
    place->second.end = place->second.execution.Begin(now);
    ForgetIfLost(place);
  }
  return !turn.claimed.empty() || std::ranges::count(turn.ended, true) > 0;
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
  for (const auto& [id, place] : places_) consider(place.execution.Deadline());
  return wake;
}

}  // namespace plovix
