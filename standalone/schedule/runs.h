// The runs of a schedule as instants, for the preview, the list, scripts and the program that starts tasks.
#pragma once

#include <chrono>
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

// A schedule in a zone. Where the clocks change, a wanted time that they skip runs one gap later, and one
// that they repeat at its first instant; minutes and hours no longer than the change tick through it, as
// Schedule::TicksThrough says. Of runs that coincide only one is left: the one that was not shifted. Every
// query costs the same, whatever the age of the schedule and the time to the run.
class Timetable {
 public:
  Timetable(const Schedule& schedule, Zone zone);

  // The first run strictly after `after`; nothing if there is none. Called with the instant of each run in
  // turn, it lists them all.
  [[nodiscard]] std::optional<Run> Next(std::chrono::sys_seconds after) const;
  // The last run at or before `until`; nothing if there is none.
  [[nodiscard]] std::optional<Run> Latest(std::chrono::sys_seconds until) const;

 private:
  [[nodiscard]] Run RunOf(std::chrono::sys_seconds at, DateTime wanted, const ZonePeriod& period) const;

  Schedule schedule_;
  Zone zone_;
};

// The first and the last `count` runs in the span (after, until], ascending; fewer if it has fewer.
[[nodiscard]] std::vector<Run> NextRuns(const Timetable& timetable, std::chrono::sys_seconds after,
                                        std::size_t count, std::chrono::sys_seconds until = kLastInstant);
[[nodiscard]] std::vector<Run> LatestRuns(const Timetable& timetable, std::chrono::sys_seconds after,
                                          std::size_t count, std::chrono::sys_seconds until);
// The number of runs in the span (after, until]. Takes the time of a query for each of them, and no memory.
[[nodiscard]] std::size_t CountRuns(const Timetable& timetable, std::chrono::sys_seconds after,
                                    std::chrono::sys_seconds until);

}  // namespace plovix
