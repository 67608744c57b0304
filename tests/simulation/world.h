// A seeded world in which automation managers live: the real managers and the real stores, on clocks that are
// set by hand, with actions that only take their time. The seed decides who steps, freezes, dies and starts
// again, which change of the store fails before or after it is stored, when the clock is set, and what people
// ask for.
#pragma once

#include <plovix/standalone/runs/manager.h>
#include <plovix/standalone/runs/task_control.h>

#include <memory>
#include <random>

#include "faulty_store.h"

namespace plovix::test {

// What happened.
struct SimulatedEvent {
  enum class What { kClaim, kAction, kEnd };
  What what = What::kClaim;
  RunRecord run = {};       // as claimed; else its id and epoch, of an action also its task
  std::string record = {};  // of an action
  std::string action = {};  // its text
  Instant at = {};          // on the wall
  bool paused = false;      // of a claim: the task, or everything, was
};

class SimulatedWorld {
 public:
  // Both outlive the world.
  SimulatedWorld(TaskStorage& tasks, RunStore& runs, std::uint64_t seed);
  ~SimulatedWorld();

  // So many things happen; then nothing goes wrong for some hours, so that everything has to settle.
  void Live(int turns);

  struct Tasks {  // ids
    std::int64_t repeat = 0, leave = 0, once = 0, modified = 0;
  };
  [[nodiscard]] const Tasks& Ids() const noexcept { return ids_; }
  [[nodiscard]] const std::vector<SimulatedEvent>& Events() const noexcept { return events_; }
  [[nodiscard]] Instant Saved() const noexcept { return saved_; }
  [[nodiscard]] Instant Now() const noexcept { return wall_; }
  [[nodiscard]] const Zone& TimeZone() const noexcept { return zone_; }
  [[nodiscard]] static std::vector<std::string> Records();  // their keys
  [[nodiscard]] bool SetsClock() const noexcept { return sets_clock_; }

 private:
  class Place;  // of a manager
  friend class Place;

  std::int64_t Save(int minutes, std::int16_t records, int mode, const TaskPolicies& policies);
  [[nodiscard]] TaskPolicies AnyPolicies();
  void Act();
  void Ask();
  void Settle();
  void Pass(std::chrono::seconds time);
  [[nodiscard]] int Below(int limit) { return std::uniform_int_distribution(0, limit - 1)(random_); }
  void Note(SimulatedEvent event);
  void LetAnotherStep();
  [[nodiscard]] FaultyStore::Listener Listen();

  TaskStorage& tasks_;
  RunStore& runs_;
  std::mt19937_64 random_;
  bool sets_clock_;
  Zone zone_;
  Instant wall_, boot_, saved_;
  FaultyStore asked_;  // what people do; never fails
  TaskControl control_;
  Tasks ids_;
  std::vector<std::unique_ptr<Place>> places_;
  std::int64_t last_number_ = 0;
  std::map<std::string, int> versions_;  // of the records
  std::vector<SimulatedEvent> events_;
  bool calm_ = false;     // nothing goes wrong any more
  bool another_ = false;  // a manager steps in the midst of another one's step
};

}  // namespace plovix::test
