// The range of days for schedules and zones: wide enough for every stored date, and narrow enough that adding
// a 32-bit interval to a day never overflows and every year fits std::chrono::year.
#pragma once

#include <chrono>

namespace plovix {

inline constexpr std::chrono::year kFirstYear{-9999};
inline constexpr std::chrono::year kLastYear{9999};
inline constexpr std::chrono::local_days kFirstDay{kFirstYear / std::chrono::January / 1};
inline constexpr std::chrono::local_days kLastDay{kLastYear / std::chrono::December / 31};
inline constexpr std::chrono::local_seconds kFirstSecond{kFirstDay};
inline constexpr std::chrono::local_seconds kLastSecond =
    kLastDay + std::chrono::hours{24} - std::chrono::seconds{1};

}  // namespace plovix
