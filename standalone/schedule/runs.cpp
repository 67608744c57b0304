#include "runs.h"

#include <algorithm>
#include <utility>

namespace plovix {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

DateTime Shown(sys_seconds at, seconds offset) {
  return DateTime{(at + offset).time_since_epoch()};
}

sys_seconds Instant(DateTime wall, seconds offset) {
  return sys_seconds{wall.time_since_epoch() - offset};
}

// The wanted times whose instants are counted with one offset: from `begin` to before `end`.
struct Stretch {
  sys_seconds begin, end;
  seconds offset;

  std::optional<sys_seconds> After(const Schedule& schedule, sys_seconds after) const {
    after = std::max(after, begin - seconds{1});
    if (after + seconds{1} >= end) return std::nullopt;
    const auto wanted = schedule.Next(Shown(after, offset));
    if (!wanted || Instant(*wanted, offset) >= end) return std::nullopt;
    return Instant(*wanted, offset);
  }
  std::optional<sys_seconds> AtOrBefore(const Schedule& schedule, sys_seconds until) const {
    until = std::min(until, end - seconds{1});
    if (until < begin) return std::nullopt;
    const auto wanted = schedule.Previous(Shown(until + seconds{1}, offset));
    if (!wanted || Instant(*wanted, offset) < begin) return std::nullopt;
    return Instant(*wanted, offset);
  }
};

// What the clocks show in a period, and what they skipped at its begin; either without the times that do not
// run there by the rule of Timetable.
struct Stretches {
  Stretch shown, skipped;

  Stretches(const ZonePeriod& period, const Schedule& schedule)
      : shown{period.begin, period.end, period.offset}, skipped{period.begin, period.begin, period.before} {
    const seconds gap = period.offset - period.before;
    if (schedule.TicksThrough(abs(gap))) return;
    if (gap > seconds{0})
      skipped.end = std::min(period.end, period.begin + gap);
    else
      shown.begin -= gap;  // the first pass of a repeated time was in the period before
  }
};

}  // namespace

Timetable::Timetable(const Schedule& schedule, Zone zone) : schedule_(schedule), zone_(std::move(zone)) {}

Run Timetable::RunOf(sys_seconds at, DateTime wanted, const ZonePeriod& period) const {
  const DateTime wall = Shown(at, period.offset);
  return {.moment = {at, period.offset, std::string(period.abbreviation), wall != wanted, wall},
          .wanted = wanted,
          .moved_from = schedule_.MovedFrom(std::chrono::floor<std::chrono::days>(wanted))};
}

// Looks through the period of the next second. If it has no run, the next one is near the next wanted time,
// however many periods lie between.
std::optional<Run> Timetable::Next(sys_seconds after) const {
  after = std::clamp(after, kFirstInstant, kLastInstant);
  while (after < kLastInstant) {
    const ZonePeriod period = zone_.PeriodAt(after + seconds{1});
    const Stretches stretches(period, schedule_);
    const auto shown = stretches.shown.After(schedule_, after);
    const auto skipped = stretches.skipped.After(schedule_, after);
    if (skipped && !(shown && *shown <= *skipped))
      return RunOf(*skipped, Shown(*skipped, period.before), period);
    if (shown) return RunOf(*shown, Shown(*shown, period.offset), period);
    after = period.end - seconds{1};
    const auto wanted = schedule_.Next(Shown(after, -kMostOffset));
    if (!wanted) return std::nullopt;
    after = std::max(after, Instant(*wanted, kMostOffset));
  }
  return std::nullopt;
}

std::optional<Run> Timetable::Latest(sys_seconds until) const {
  until = std::clamp(until, kFirstInstant, kLastInstant);
  while (until > kFirstInstant) {
    const ZonePeriod period = zone_.PeriodAt(until);
    const Stretches stretches(period, schedule_);
    const auto shown = stretches.shown.AtOrBefore(schedule_, until);
    const auto skipped = stretches.skipped.AtOrBefore(schedule_, until);
    if (skipped && !(shown && *shown >= *skipped))
      return RunOf(*skipped, Shown(*skipped, period.before), period);
    if (shown) return RunOf(*shown, Shown(*shown, period.offset), period);
    until = period.begin - seconds{1};
    const auto wanted = schedule_.Previous(Shown(until, kMostOffset));
    if (!wanted) return std::nullopt;
    until = std::min(until, Instant(*wanted, -kMostOffset));
  }
  return std::nullopt;
}

std::vector<Run> NextRuns(const Timetable& timetable, sys_seconds after, std::size_t count,
                          sys_seconds until) {
  std::vector<Run> runs;
  while (runs.size() < count) {
    auto run = timetable.Next(after);
    if (!run || run->moment.at > until) break;
    after = run->moment.at;
    runs.push_back(*std::move(run));
  }
  return runs;
}

std::vector<Run> LatestRuns(const Timetable& timetable, sys_seconds after, std::size_t count,
                            sys_seconds until) {
  std::vector<Run> runs;
  while (runs.size() < count) {
    auto run = timetable.Latest(until);
    if (!run || run->moment.at <= after) break;
    until = run->moment.at - seconds{1};
    runs.push_back(*std::move(run));
  }
  std::ranges::reverse(runs);
  return runs;
}

std::size_t CountRuns(const Timetable& timetable, sys_seconds after, sys_seconds until) {
  std::size_t count = 0;
  for (auto run = timetable.Next(after); run && run->moment.at <= until; ++count)
    run = timetable.Next(run->moment.at);
  return count;
}

}  // namespace plovix
