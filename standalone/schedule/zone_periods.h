// The periods of a time zone between the changes of its clocks. Used by Zone and Timetable.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "calendar_range.h"

class QTimeZone;

namespace plovix {

// Further from UTC than any zone's wall time.
inline constexpr std::chrono::days kMostOffset{5};
// Every instant of a wall time between kFirstSecond and kLastSecond is between these two.
inline constexpr std::chrono::sys_seconds kFirstInstant{kFirstSecond.time_since_epoch() - 2 * kMostOffset};
inline constexpr std::chrono::sys_seconds kLastInstant{kLastSecond.time_since_epoch() + 2 * kMostOffset};

// From `begin` to before `end`.
struct ZonePeriod {
  std::chrono::sys_seconds begin, end;  // of the first one kFirstInstant, of the last one after kLastInstant
  std::chrono::seconds offset;          // wall time minus UTC
  std::chrono::seconds before;          // that of the period before; of the first one its own
  std::string_view abbreviation;        // lives as long as the table
};

// A table of the changes: finding a period takes nanoseconds, where the zone itself takes a good part of a
// microsecond.
class ZonePeriods {
 public:
  // `zone`: valid. Takes some milliseconds for a zone whose clocks change every year.
  explicit ZonePeriods(const QTimeZone& zone);

  // The period of an instant; one outside kFirstInstant to kLastInstant is clamped.
  [[nodiscard]] ZonePeriod At(std::chrono::sys_seconds at) const;

 private:
  struct Change {
    std::chrono::sys_seconds at;
    std::chrono::seconds offset;
    std::string abbreviation;
  };

  std::vector<Change> changes_;  // ascending; the first one is at kFirstInstant
  // The first change of those that come again every 400 years; the number of changes if there is none.
  std::size_t repeated_ = 0;
};

}  // namespace plovix
