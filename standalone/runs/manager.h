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
  // written. Fails if the store does; then it can be called again, and goes on where it was.
  std::optional<Instant> Step(Instant now);
  // From now on nothing is planned, begun or taken over; what runs goes on.
  void Drain() noexcept { draining_ = true; }
  // Ends all that runs; the manager does nothing afterwards. After a failure it can be called again.
  void Stop(Instant now);
  [[nodiscard]] std::size_t Running() const noexcept { return places_.size(); }

 private:
  // A run of this manager, until its end is stored.
  struct Place {
    Execution execution;
    std::optional<RunEnd> end;
  };
  using Places = std::map<std::int64_t, Place>;  // by run

  void TakeEnds(Instant now);
  std::map<std::int64_t, RunRecord> LookAtRunning(Instant now);
  void EndWhatMust(const std::map<std::int64_t, RunRecord>& own, Instant now);
  void Reap(const RunRecord& run, Instant now);
  void Plan(const std::vector<std::int64_t>& tasks, Instant now);
  bool EndAndClaim(std::size_t most, Instant now);
  void ForgetIfLost(Places::iterator place);
  [[nodiscard]] std::vector<std::int64_t> ToPlan(Instant now);
  [[nodiscard]] std::optional<Instant> NextWake(Instant now);
  void Tell(const RunRecord& run, const RunEnd* end) const;

  const ManagerPorts& ports_;
  Zone zone_;
  Settings settings_;
  Places places_;
  std::vector<ActionEnd> action_ends_;  // that the launcher told, oldest first
  std::optional<Instant> stepped_;      // at
  bool draining_ = false, stopped_ = false;
};

}  // namespace plovix
