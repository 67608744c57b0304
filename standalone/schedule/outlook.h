// What is to come in a task's schedule: computed once for the sentences and for the list of runs, so that
// both agree.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "runs.h"

namespace plovix {

struct Outlook {
  std::chrono::local_days start;     // the day from which Schedule counts
  ShortMonth short_month;            // as the schedule's
  DateTime now;                      // the time on the clock
  std::vector<Run> runs;             // the next ones
  bool ran;                          // there was a run at `now` or before
  std::optional<Schedule::Gap> gap;  // as Schedule::LongGap returns it
};

// With at most `count` runs, at least one.
[[nodiscard]] Outlook OutlookOf(const RecurrenceRecord& recurrence, std::chrono::local_days start,
                                ShortMonth short_month, const Zone& zone, std::chrono::sys_seconds now,
                                std::size_t count = 1);

// The instant that `clock` shows; if it is empty, the machine's. `offset`: its time minus UTC; without it a
// repeated time means its first instant.
[[nodiscard]] std::chrono::sys_seconds InstantOf(const std::function<DateTime()>& clock,
                                                 const std::optional<std::chrono::seconds>& offset,
                                                 const Zone& zone);

}  // namespace plovix
