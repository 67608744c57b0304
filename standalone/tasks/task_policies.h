/// @file
/// What happens with a task's occurrences when something is in their way: the host's own settings, kept
/// beside the task, so that no page touches them.
#pragma once

#include <plovix/base/requirements.h>

#include <array>
#include <chrono>
#include <string_view>

namespace plovix {

/// Occurrences that nobody started within a minute of their time.
enum class MissedPolicy {
  kOnce,  ///< the latest one is run if it is at most a day late
  kNone,  ///< none is run
  kAll    ///< the latest `missed_count` are run, oldest first, however late
};
/// An occurrence that comes while the task runs or is being retried.
enum class OverlapPolicy {
  kSkip,  ///< it is skipped
  kQueue  ///< one waits, further ones are skipped
};
/// What was begun when the manager died.
enum class InterruptedPolicy {
  kRepeat,  ///< it is done again: at least once
  kLeave    ///< it waits for a person: at most once
};
/// Day 29 to 31, and 29 February, in a month that lacks the day.
enum class ShortMonth {
  kLast,  ///< the month's last day instead
  kSkip   ///< no run in that month
};

/// As scripts and files write them, in the order of the enumerations.
/// @{
inline constexpr std::array<std::string_view, 3> kMissedPolicyNames{"once", "none", "all"};
inline constexpr std::array<std::string_view, 2> kOverlapPolicyNames{"skip", "queue"};
inline constexpr std::array<std::string_view, 2> kInterruptedPolicyNames{"repeat", "leave"};
inline constexpr std::array<std::string_view, 2> kShortMonthNames{"last", "skip"};
/// @}

/// The policies of one task. The defaults are those of a task that nobody set any for.
struct TaskPolicies {
  MissedPolicy missed = MissedPolicy::kOnce;                   ///< of what nobody started in time
  int missed_count = 1;                                        ///< for kAll; at least 1
  OverlapPolicy overlap = OverlapPolicy::kSkip;                ///< of what comes while it runs
  int retries = 0;                                             ///< after the first attempt; 0 or more
  InterruptedPolicy interrupted = InterruptedPolicy::kRepeat;  ///< of what a manager left behind
  ShortMonth short_month = ShortMonth::kLast;                  ///< of days that a month lacks
  std::chrono::seconds limit{0};                               ///< for a whole attempt; 0: none
  bool operator==(const TaskPolicies&) const = default;
};

}  // namespace plovix
