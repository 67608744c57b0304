// The numbers of the texts that the monthly and yearly pages share.
#pragma once

namespace plovix {

// The ordinals, ascending: positions 0 to 4 in their list are values of RelativeWeek.
inline constexpr int kFirstOrdinalText = 39;
inline constexpr int kLastOrdinalText = 43;
// Sunday to Saturday, then any day, weekday and weekend day: the position plus one is RelativeDayOfWeek.
inline constexpr int kFirstDayText = 44;
inline constexpr int kLastDayText = 53;
inline constexpr int kDayNotNumericText = 111;

}  // namespace plovix
