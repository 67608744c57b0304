// The numbers of the texts that the monthly and the yearly page have in common.
#pragma once

namespace plovix {

// The ordinals, ascending: positions 0 to 4 of their list are RelativeWeek.
inline constexpr int kFirstOrdinalText = 39;
inline constexpr int kLastOrdinalText = 43;
// Sunday to Saturday, then any day, weekday and weekend day: position plus one is RelativeDayOfWeek.
inline constexpr int kFirstDayText = 44;
inline constexpr int kLastDayText = 53;
inline constexpr int kDayNotNumericText = 111;

}  // namespace plovix
