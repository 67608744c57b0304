// When a schedule ticks, regardless of the days that its pattern selects. Used by Schedule.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>

#include <chrono>
#include <optional>

namespace plovix {

// Ticks at a constant interval from an origin on, without end; a time of day ticks once a day.
class TimeRule {
 public:
  // Nothing for an unknown kind of time or a negative interval. `start`: the day from whose midnight the
  // intervals are counted, between kFirstDay and kLastDay.
  [[nodiscard]] static std::optional<TimeRule> From(const RecurrenceRecord& record,
                                                    std::chrono::local_days start);

  // The time from one tick to the next.
  [[nodiscard]] std::chrono::seconds Step() const { return step_; }
  // The same for an interval; nothing for a time of day.
  [[nodiscard]] std::optional<std::chrono::seconds> Interval() const {
    return is_interval_ ? std::optional{step_} : std::nullopt;
  }
  // The nearest tick, including `at` itself. `at`: between kFirstSecond and kLastSecond.
  [[nodiscard]] DateTime AtOrAfter(DateTime at) const;
  [[nodiscard]] std::optional<DateTime> AtOrBefore(DateTime at) const;  // nothing before the first tick

 private:
  TimeRule(DateTime first, std::chrono::seconds step, bool is_interval)
      : first_(first), step_(step), is_interval_(is_interval) {}

  DateTime first_;
  std::chrono::seconds step_;
  bool is_interval_;
};

}  // namespace plovix
