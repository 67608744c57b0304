// When a recurrence runs, in wall times, without zone and clock. Used by Timetable.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>

#include <chrono>
#include <optional>

#include "day_rule.h"
#include "time_rule.h"

namespace plovix {

// The runs of one record from midnight of its start day to the end of the year 9999. A schedule with a number
// outside its range, without a pattern or with a start outside the years -9999 to 9999 never runs. Every
// query is calendar arithmetic, whatever the age of the start. Only intervals longer than a day need a search
// for a tick on a selected day, which gives up after 400 years.
class Schedule {
 public:
  // `start`: the day from which the intervals are counted.
  Schedule(const RecurrenceRecord& record, std::chrono::local_days start,
           ShortMonth short_month = ShortMonth::kLast);

  // The first run strictly after `after`; nothing if there is none.
  [[nodiscard]] std::optional<DateTime> Next(DateTime after) const;
  // The last run strictly before `before`; nothing if there is none.
  [[nodiscard]] std::optional<DateTime> Previous(DateTime before) const;
  [[nodiscard]] bool IsRun(DateTime at) const;
  // Whether the runs are intervals of minutes or hours that are no longer than this change of the clocks.
  // They go on through it: none in what is skipped, and all of them in both passes of what is repeated.
  [[nodiscard]] bool TicksThrough(std::chrono::seconds change) const;
  // A period without a run. `from`: a run, or the midnight of the start day before the first one. `to`: the
  // next run; nothing if there is none after `from`.
  struct Gap {
    DateTime from;
    std::optional<DateTime> to;
  };
  // A gap of more than a year that exists only because ticks and selected days do not meet: the one at `now`,
  // else the first that begins within ten years after it. Also nothing if there is no run at all.
  [[nodiscard]] std::optional<Gap> LongGap(DateTime now) const;
  // The record's day number, which the month of `day` lacks; nothing if `day` was not moved.
  [[nodiscard]] std::optional<int> MovedFrom(std::chrono::local_days day) const;

 private:
  [[nodiscard]] bool IsLong(const Gap& gap) const;

  DayRule days_;
  std::optional<TimeRule> times_;  // nothing if it never runs
};

}  // namespace plovix
