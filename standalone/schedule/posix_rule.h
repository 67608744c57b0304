// The zone rule of the TZ variable, "CET-1CEST,M3.5.0,M10.5.0/3", which also ends a zone's file and there
// says what holds after its last stored change. Used by Zone.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plovix {

// A period of one offset: from `begin` to before `end`.
struct OffsetPeriod {
  std::chrono::sys_seconds begin, end;
  std::chrono::seconds offset;  // wall time less UTC
  std::string abbreviation;
};

class PosixRule {
 public:
  // Nothing when `text` is no such rule. Times of a change may go from -167 to 167 hours, as zone files have
  // them. A rule with a summer time but without its changes gets those of the United States, as C libraries
  // do.
  [[nodiscard]] static std::optional<PosixRule> Parse(std::string_view text);

  // `at`: inside kFirstYear to kLastYear. A rule without summer time has one period, longer than these years.
  [[nodiscard]] OffsetPeriod At(std::chrono::sys_seconds at) const;

 private:
  class Reader;
  struct LocalTime {
    std::string abbreviation;
    std::chrono::seconds offset{};
  };
  struct Change {
    enum class Kind : std::uint8_t { kDayOfYear, kDayWithoutLeap, kWeekdayOfMonth };
    [[nodiscard]] std::chrono::local_seconds In(std::chrono::year year) const;

    Kind kind = Kind::kDayOfYear;
    int day = 0;    // of the year: from 0, or from 1 without 29 February
    int month = 1;  // 1 to 12
    int week = 1;   // 1 to 5, 5: the last
    int weekday = 0;
    std::chrono::seconds time{};  // after midnight of the day
  };
  struct Summer {
    LocalTime time;
    Change begin, end;
  };

  LocalTime standard_;
  std::optional<Summer> summer_;
};

}  // namespace plovix
