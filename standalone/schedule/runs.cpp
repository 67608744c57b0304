#include "runs.h"

#include <algorithm>

namespace plovix {
namespace {

// A shifted run can come after later wall times. If two coincide, the one with the later wall time was not
// shifted, and stays.
void Insert(std::vector<Run>& runs, Run run) {
  const auto place = std::lower_bound(runs.begin(), runs.end(), run, [](const Run& left, const Run& right) {
    return left.moment.at < right.moment.at;
  });
  if (place == runs.end() || place->moment.at != run.moment.at)
    runs.insert(place, std::move(run));
  else
    *place = std::move(run);
}

}  // namespace

std::vector<Run> NextRuns(const Schedule& schedule, const Zone& zone, std::chrono::sys_seconds now,
                          std::size_t count) {
  std::vector<Run> runs;
  if (count == 0) return runs;
  std::optional<DateTime> wanted = schedule.Next(zone.EarliestWallAfter(now));
  for (; wanted; wanted = schedule.Next(*wanted)) {
    Run run{zone.At(*wanted), *wanted, schedule.MovedFrom(std::chrono::floor<std::chrono::days>(*wanted))};
    if (run.moment.at <= now) continue;
    // No later wall time has an earlier instant; for a shifted one this is the instant by the clock after the
    // gap.
    const std::chrono::sys_seconds earliest{wanted->time_since_epoch() - run.moment.offset};
    Insert(runs, std::move(run));
    if (runs.size() >= count && earliest >= runs[count - 1].moment.at) break;
  }
  if (runs.size() > count) runs.resize(count, runs.front());
  return runs;
}

}  // namespace plovix
