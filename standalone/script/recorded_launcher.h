// Plays the executing of actions on a virtual clock: each is recorded, takes as long as the script says, and
// succeeds unless the script says otherwise.
#pragma once

#include <plovix/standalone/runs/manager_ports.h>

#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace plovix::script {

// Thrown out of the manager, which is then as dead as after a power failure.
struct ManagerCrash {};

class RecordedLauncher final : public Launcher {
 public:
  Instant now{};                  // set before the manager steps
  std::chrono::seconds takes{0};  // from now on
  int fails = 0;                  // the next ones
  bool crashes = false;           // the next action is the last thing that its manager does

  void Begin(const ActionOrder& order) override;
  [[nodiscard]] std::vector<ActionEnd> Ended(Instant now) override;
  void Stop(std::int64_t run) override;
  [[nodiscard]] std::optional<Instant> NextEnd() const override;

  // Everything begun since last asked.
  [[nodiscard]] nlohmann::ordered_json TakeExecuted() {
    return std::exchange(executed_, nlohmann::ordered_json::array());
  }
  void ForgetRunning() { running_.clear(); }

 private:
  struct Going {
    Instant end;
    ActionEnd told;
  };
  std::vector<Going> running_;
  nlohmann::ordered_json executed_ = nlohmann::ordered_json::array();
};

}  // namespace plovix::script
