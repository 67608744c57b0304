// One run of a program: what a manager asks for, and what became of it.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "boot_clock.h"
#include "frame_socket.h"

namespace plovix::runner {

struct ProgramRequest {
  std::int64_t run = 0;                     // how the manager calls it; told again at the end
  std::string path;                         // absolute; never looked for elsewhere, never given to a shell
  std::vector<std::string> arguments;       // without the program itself
  std::vector<std::string> environment;     // NAME=VALUE; nothing else is in its environment
  std::string folder;                       // absolute; in which it starts
  std::string output_path;                  // a file for what it writes, of mode 0600; an old one is emptied
  std::vector<std::string> secrets;         // masked in that file
  std::chrono::milliseconds time_limit{0};  // of awake time; 0: none
  std::chrono::milliseconds patience{10'000};     // between asking the tree to end and ending it
  std::optional<BootClock::time_point> deadline;  // until which the manager may run it; can be extended
  std::string lock_path;                          // a file; empty: nothing is locked
  std::int64_t lock_offset = 0;  // of the byte in it that is locked as long as the tree may live
};

// Why a program was ended before it ended by itself.
enum class StopReason {
  kNone,
  kCancelled,  // somebody asked for it
  kTimeLimit,  // it took too long
  kDrained,    // the manager ends
  kDeadline    // the manager did not extend the deadline in time
};

struct ProgramEnd {
  std::int64_t run = 0;
  std::string failure;             // why it was not executed, or how it was lost, in words; empty: it ran
  std::optional<int> exit_status;  // what it returned
  std::optional<int> signal;       // the one that ended it
  StopReason stopped = StopReason::kNone;
  std::vector<std::string> leftovers;  // "NAME (ID)" of what still ran when it ended, and was ended then
  std::int64_t output_bytes = 0;       // all that it wrote
  std::int64_t left_out = 0;           // bytes of these that the file lacks between its beginning and its end
  std::string output_failure;          // why the file lacks more; empty: it does not
  [[nodiscard]] bool Succeeded() const { return failure.empty() && exit_status == 0; }
};

// @{
// How they travel between manager and holder; reading fails with a Failure if the frame is none of these.
[[nodiscard]] Frame FrameOf(const ProgramRequest& request);
[[nodiscard]] Frame FrameOf(const ProgramEnd& end);
[[nodiscard]] ProgramRequest RequestFrom(const Frame& frame);
[[nodiscard]] ProgramEnd EndFrom(const Frame& frame);
// @}

// The other frames, from the manager: a word, and a number as text - a StopReason, or a BootClock's time.
inline constexpr std::string_view kStopFrame = "stop";
inline constexpr std::string_view kDeadlineFrame = "deadline";
[[nodiscard]] Frame NumberFrame(std::string_view word, std::int64_t number);
[[nodiscard]] std::int64_t NumberFrom(const Frame& frame);

}  // namespace plovix::runner
