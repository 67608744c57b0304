// Computes which days a pattern selects. Used by Schedule.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <variant>

#include "day_in_month.h"

namespace plovix {

class DayRule {
 public:
  // Selects no day.
  DayRule() = default;
  // `start`: the first day that can be selected, inside kFirstDay to kLastDay. A pattern without a choice or
  // with a number outside its range selects no day.
  DayRule(const PatternRecord& pattern, std::chrono::local_days start, ShortMonth short_month);

  // The nearest selected day, including `day` itself; nothing if there is none up to kLastDay, or none since
  // the start.
  [[nodiscard]] std::optional<std::chrono::local_days> AtOrAfter(std::chrono::local_days day) const;
  [[nodiscard]] std::optional<std::chrono::local_days> AtOrBefore(std::chrono::local_days day) const;
  [[nodiscard]] bool Selects(std::chrono::local_days day) const;
  // The day number that the month of `day` lacks, if that is why `day` is selected.
  [[nodiscard]] std::optional<int> MovedFrom(std::chrono::local_days day) const;

 private:
  // Only days from the start on are requested, so no count from an origin below is negative.
  struct Daily {
    [[nodiscard]] std::optional<std::chrono::local_days> AtOrAfter(std::chrono::local_days day) const;
    [[nodiscard]] std::optional<std::chrono::local_days> AtOrBefore(std::chrono::local_days day) const;
    std::chrono::local_days start;
    std::int64_t step;  // days
    bool weekdays_only;
  };
  struct Weekly {
    [[nodiscard]] std::optional<std::chrono::local_days> AtOrAfter(std::chrono::local_days day) const;
    [[nodiscard]] std::optional<std::chrono::local_days> AtOrBefore(std::chrono::local_days day) const;
    std::chrono::local_days first_sunday;
    std::int64_t step;  // weeks
    unsigned day_set;   // bit 0 Sunday; not empty
  };
  struct Months {  // monthly and yearly
    [[nodiscard]] std::optional<std::chrono::local_days> AtOrAfter(std::chrono::local_days day) const;
    [[nodiscard]] std::optional<std::chrono::local_days> AtOrBefore(std::chrono::local_days day) const;
    // A month has the day before the calendar repeats, so that no search is long.
    [[nodiscard]] bool HasRuns() const;
    std::int64_t first_month;  // as MonthNumber in the source
    std::int64_t step;         // months
    DayInMonth day_in_month;
  };
  struct None {
    [[nodiscard]] static std::optional<std::chrono::local_days> AtOrAfter(std::chrono::local_days) {
      return {};
    }
    [[nodiscard]] static std::optional<std::chrono::local_days> AtOrBefore(std::chrono::local_days) {
      return {};
    }
  };
  using Kind = std::variant<None, Daily, Weekly, Months>;

  static Kind KindOf(const std::monostate& pattern, std::chrono::local_days start, ShortMonth short_month);
  static Kind KindOf(const DailyRecord& pattern, std::chrono::local_days start, ShortMonth short_month);
  static Kind KindOf(const WeeklyRecord& pattern, std::chrono::local_days start, ShortMonth short_month);
  static Kind KindOf(const MonthlyRecord& pattern, std::chrono::local_days start, ShortMonth short_month);
  static Kind KindOf(const YearlyRecord& pattern, std::chrono::local_days start, ShortMonth short_month);

  Kind kind_;
  std::chrono::local_days start_{};
};

}  // namespace plovix
