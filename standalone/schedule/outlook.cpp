#include "outlook.h"

#include <algorithm>

namespace plovix {

Outlook OutlookOf(const RecurrenceRecord& recurrence, std::chrono::local_days start, const Zone& zone,
                  std::chrono::sys_seconds now, std::size_t count) {
  const Schedule schedule(recurrence, start);
  Outlook outlook{.start = start,
                  .now = zone.EarliestWallAfter(now),
                  .runs = NextRuns(schedule, zone, now, std::max<std::size_t>(count, 1)),
                  .ran = false,
                  .gap = {}};
  outlook.ran = schedule.Previous(outlook.now + std::chrono::seconds{1}).has_value();
  if (outlook.ran || !outlook.runs.empty()) outlook.gap = schedule.LongGap(outlook.now);
  return outlook;
}

std::chrono::sys_seconds InstantOf(const std::function<DateTime()>& clock,
                                   const std::optional<std::chrono::seconds>& offset, const Zone& zone) {
  if (!clock) return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  const DateTime wall = clock();
  if (!offset) return zone.At(wall).at;
  return std::chrono::sys_seconds{wall.time_since_epoch() - *offset};
}

}  // namespace plovix
