// What is to come of a task's schedule: computed once for the sentences and for the list of runs, so that
// both tell the same.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "runs.h"

namespace plovix {

struct Outlook {
  std::chrono::local_days start;     // the day that Schedule counts from
  DateTime now;                      // what the clock shows
  std::vector<Run> runs;             // the next ones
  bool ran;                          // there was a run at `now` or before
  std::optional<Schedule::Gap> gap;  // as Schedule::LongGap tells it
};

// With at most `count` runs, at least one.
[[nodiscard]] Outlook OutlookOf(const RecurrenceRecord& recurrence, std::chrono::local_days start,
                                const Zone& zone, std::chrono::sys_seconds now, std::size_t count = 1);

// The instant that `clock` shows, the machine's when it is empty. `offset`: its time less UTC; without one a
// repeated time means its first instant.
[[nodiscard]] std::chrono::sys_seconds InstantOf(const std::function<DateTime()>& clock,
                                                 const std::optional<std::chrono::seconds>& offset,
                                                 const Zone& zone);

}  // namespace plovix
