#include "recorded_launcher.h"

#include <algorithm>

namespace plovix::script {

void RecordedLauncher::Begin(const ActionOrder& order) {
  executed_.push_back(OrderJson(order));
  if (std::exchange(crashes, false)) throw ManagerCrash();
  const bool failing = fails > 0;
  if (failing) --fails;
  running_.push_back({now + takes, {order.run, order.epoch, failing ? "the action failed" : ""}});
}

std::vector<ActionEnd> RecordedLauncher::Ended(Instant at) {
  std::vector<ActionEnd> ended;
  std::erase_if(running_, [&](const Going& going) {
    if (going.end > at) return false;
    ended.push_back(going.told);
    return true;
  });
  return ended;
}

void RecordedLauncher::Stop(std::int64_t run) {
  std::erase_if(running_, [&](const Going& going) { return going.told.run == run; });
}

std::optional<Instant> RecordedLauncher::NextEnd() const {
  const auto first = std::ranges::min_element(running_, {}, &Going::end);
  return first == running_.end() ? std::nullopt : std::optional(first->end);
}

}  // namespace plovix::script
