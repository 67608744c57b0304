// What is to come of a task's schedule: computed once for the sentences and for the list of runs, so that
// both tell the same.
#pragma once

#include <plovix/standalone/model/host_state.h>

#include <chrono>
#include <cstddef>
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

// The instant of the host's now. A clock that was set to a repeated time without its offset means the first
// one.
[[nodiscard]] std::chrono::sys_seconds InstantOf(const HostState& state, const Zone& zone);

}  // namespace plovix
