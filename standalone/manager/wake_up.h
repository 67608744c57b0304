// What a manager sleeps on: the next instant, the end of an action, a glance at the task file, a clock that
// is set, and the wish that it end.
#pragma once

#include <plovix/standalone/runner/descriptor.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace plovix::manager {

// How the manager is to end.
enum class EndWish {
  kNone,       // not at all
  kDrain,      // begins nothing; what runs has the usual time to come to its end
  kDrainLong,  // the same, whatever time it takes
  kEnd,        // what runs is asked to end
  kKill        // at once
};

// The line by which whoever holds the other end of the input asks for kDrainLong before closing it.
inline constexpr std::string_view kDrainLine = "drain\n";

class WakeUp {
 public:
  // `ended`: a descriptor that becomes readable when an action has ended. SIGTERM and SIGINT were blocked
  // before the first thread was started. `while_open`: the manager is to end when its standard input does.
  WakeUp(int ended, bool while_open);

  // Until `at`, an action's end, the clock being set, another wish, or `longest`, whichever comes first.
  void Wait(std::optional<std::chrono::sys_seconds> at, std::chrono::milliseconds longest);
  // The first signal asks to drain, another one to kill; the end of the input asks to end.
  [[nodiscard]] EndWish Wish() const noexcept { return wish_; }

 private:
  void TakeSignals();
  void TakeInput();

  int ended_, input_;  // -1: the input says nothing
  std::string said_;   // by the input
  EndWish wish_ = EndWish::kNone;
  runner::Descriptor signals_, clock_;
};

// Blocks the signals that WakeUp waits for, in this thread and in those that it starts.
void BlockSignals();

}  // namespace plovix::manager
