// The automation manager: plans what is due, claims it, and sees it through. It has no clock, no thread and
// no database of its own: Step is told the time and says when it wants to be called again. Any number of them
// share a store.
#pragma once

#include <plovix/standalone/schedule/zone.h>

#include <map>

#include "execution.h"

namespace plovix {

class Manager {
 public:
  struct Settings {
    std::int64_t number = 1;     // among the managers of the store, never given twice
    std::size_t most_runs = 16;  // at the same time
    // Whether the manager of that number lives; empty: only this one does.
    std::function<bool(std::int64_t number)> alive = {};
    // Whether anything that a former manager started for the run may still live; empty: nothing does.
    std::function<bool(std::int64_t run)> held = {};
  };
  // `ports` outlives the manager.
  Manager(const ManagerPorts& ports, const Zone& zone, Settings settings);

  // Does everything that is to be done at `now`: ends first, then what is due, then claims. Returns when to
  // be called again at the latest; to be called earlier when an action has ended or somebody else has
  // written. Fails if the store does; then it can be called again.
  std::optional<Instant> Step(Instant now);
  // From now on nothing is planned, begun or taken over; what runs goes on.
  void Drain() noexcept { draining_ = true; }
  // Ends all that runs; the manager does nothing afterwards.
  void Stop(Instant now);
  [[nodiscard]] std::size_t Running() const noexcept { return executions_.size(); }

 private:
  // Each returns whether anything happened that could let something else happen.
  bool TakeEnds(Instant now);
  bool Claim(Instant now);
  void EndWhatMust(Instant now);
  void Reap(Instant now);
  void Plan(Instant now);
  bool GoOn(std::map<std::int64_t, Execution>::iterator run, const std::optional<RunEnd>& end);
  [[nodiscard]] std::optional<Instant> NextWake(Instant now);
  void Tell(const RunRecord& run, const RunEnd* end) const;

  const ManagerPorts& ports_;
  Zone zone_;
  Settings settings_;
  std::map<std::int64_t, Execution> executions_;  // by run
  std::optional<Instant> stepped_;                // at
  bool draining_ = false, stopped_ = false;
};

}  // namespace plovix
