// When a recurrence runs, in wall times: no zone, no clock. Used by NextRuns and by whoever asks for one run.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>

#include <chrono>
#include <optional>

#include "day_rule.h"
#include "time_rule.h"

namespace plovix {

// The runs of one record from midnight of its start day to the end of the year 9999. A number outside its
// range, a missing pattern or a start outside the years -9999 to 9999 gives a schedule that never runs.
// Every query is arithmetic on the calendar, whatever the age of the start. Only ticks longer than a day are
// searched for one on a selected day, and that search ends after 400 years without.
class Schedule {
 public:
  // `start`: the day that the intervals are counted from.
  Schedule(const RecurrenceRecord& record, std::chrono::local_days start);

  // The first run strictly after; nothing: never again.
  [[nodiscard]] std::optional<DateTime> Next(DateTime after) const;
  // The last run strictly before; nothing: none.
  [[nodiscard]] std::optional<DateTime> Previous(DateTime before) const;
  [[nodiscard]] bool IsRun(DateTime at) const;
  // A time without a run. `from`: a run, or the midnight of the start day before the first one. `to`: the
  // next run; nothing: none after `from`.
  struct Gap {
    DateTime from;
    std::optional<DateTime> to;
  };
  // A gap of more than a year only because the ticks and the selected days in it do not meet: the one at
  // `now`, else the first that begins in the ten years after it. Nothing as well when there is no run at all.
  [[nodiscard]] std::optional<Gap> LongGap(DateTime now) const;
  // The day number that the record wants and the month of `day` lacks; nothing when `day` is not a moved day.
  [[nodiscard]] std::optional<int> MovedFrom(std::chrono::local_days day) const;

 private:
  [[nodiscard]] bool IsLong(const Gap& gap) const;

  DayRule days_;
  std::optional<TimeRule> times_;  // nothing: never runs
};

}  // namespace plovix
