// The next runs of a schedule as instants, for the pages' preview and for the program that starts tasks.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "schedule.h"
#include "zone.h"

namespace plovix {

struct Run {
  Zone::Moment moment;
  DateTime wanted;                // by the schedule; differs from moment.wall if shifted out of a gap
  std::optional<int> moved_from;  // the day number that the month of `wanted` lacks
};

// The first `count` runs strictly after `now`, ascending, each instant once. Fewer if the schedule ends.
[[nodiscard]] std::vector<Run> NextRuns(const Schedule& schedule, const Zone& zone,
                                        std::chrono::sys_seconds now, std::size_t count);

}  // namespace plovix
