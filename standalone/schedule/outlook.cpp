#include "outlook.h"

#include <algorithm>

namespace plovix {

Outlook OutlookOf(const RecurrenceRecord& recurrence, std::chrono::local_days start, ShortMonth short_month,
                  const Zone& zone, std::chrono::sys_seconds now, std::size_t count) {
  const Schedule schedule(recurrence, start, short_month);
  const Timetable timetable(schedule, zone);
  Outlook outlook{.start = start,
                  .short_month = short_month,
                  .now = zone.WallAt(now),
                  .runs = NextRuns(timetable, now, std::max<std::size_t>(count, 1)),
                  .ran = timetable.Latest(now).has_value(),
                  .gap = {}};
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
