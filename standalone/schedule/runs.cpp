#include "runs.h"

#include <algorithm>

namespace plovix {
namespace {

// A shifted run can come after later wall times. The later one of two that meet is the one that was not
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

std::vector<Run> NextRuns(const Schedule& schedule, const Zone& zone, DateTime now, std::size_t count) {
  std::vector<Run> runs;
  if (count == 0) return runs;
  const std::chrono::sys_seconds after = zone.At(now).at;
  std::optional<DateTime> wanted = schedule.Next(zone.EarliestWallAfter(after));
  for (; wanted; wanted = schedule.Next(*wanted)) {
    Run run{zone.At(*wanted), *wanted, schedule.MovedFrom(std::chrono::floor<std::chrono::days>(*wanted))};
    if (run.moment.at <= after) continue;
    const bool shifted = run.moment.shifted;
    const std::chrono::sys_seconds at = run.moment.at;
    Insert(runs, std::move(run));
    // Only after a shifted run can earlier ones follow.
    if (!shifted && runs.size() >= count && at >= runs[count - 1].moment.at) break;
  }
  if (runs.size() > count) runs.resize(count, runs.front());
  return runs;
}

}  // namespace plovix
