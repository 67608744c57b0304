/// @file
/// How a task behaves where its schedule and its actions leave a choice.
#pragma once

namespace plovix {

/// What a monthly or yearly schedule does in a month that lacks its day: 29 to 31, or 29 February.
enum class ShortMonth {
  kLast,  ///< runs on the month's last day
  kSkip   ///< does not run in that month
};

}  // namespace plovix
