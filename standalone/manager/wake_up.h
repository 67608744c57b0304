// What a manager sleeps on: the next instant, the end of an action, a glance at the task file, a clock that
// is set, and the wish that it end.
#pragma once

#include <plovix/standalone/runner/descriptor.h>

#include <chrono>
#include <optional>

namespace plovix::manager {

class WakeUp {
 public:
  // `ended`: a descriptor that becomes readable when an action has ended. SIGTERM and SIGINT end Wait; they
  // were blocked before the first thread was started.
  explicit WakeUp(int ended);

  // Until `at`, an action's end, the clock being set, or `longest`, whichever comes first. False once the
  // manager is to end.
  [[nodiscard]] bool Wait(std::optional<std::chrono::sys_seconds> at, std::chrono::milliseconds longest);

 private:
  int ended_;
  runner::Descriptor signals_, clock_;
};

// Blocks the signals that WakeUp waits for, in this thread and in those that it starts.
void BlockSignals();

}  // namespace plovix::manager
