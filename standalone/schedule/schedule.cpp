#include "schedule.h"

#include <algorithm>

#include "calendar_range.h"

namespace plovix {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::local_days;
using std::chrono::seconds;

// The calendar repeats after 400 years.
constexpr days kHorizon{146'097};

constexpr days kYear{366};

}  // namespace

Schedule::Schedule(const RecurrenceRecord& record, local_days start, ShortMonth short_month) {
  if (start < kFirstDay || start > kLastDay) return;
  times_ = TimeRule::From(record, start);
  if (times_) days_ = DayRule{record.pattern, start, short_month};
}

// Jumps alternately to the next tick and to the next selected day, until a tick is on a selected day. If the
// interval is at most a day, this is at most the second tick.
std::optional<DateTime> Schedule::Next(DateTime after) const {
  if (!times_ || after >= kLastSecond) return std::nullopt;
  DateTime tick = times_->AtOrAfter(after < kFirstSecond ? kFirstSecond : after + seconds{1});
  const DateTime limit = tick + kHorizon;
  while (tick <= limit) {
    const std::optional<local_days> day = days_.AtOrAfter(floor<days>(tick));
    if (!day) return std::nullopt;
    if (tick < *day) tick = times_->AtOrAfter(*day);
    if (tick < *day + days{1}) return tick;
  }
  return std::nullopt;
}

std::optional<DateTime> Schedule::Previous(DateTime before) const {
  if (!times_ || before <= kFirstSecond) return std::nullopt;
  std::optional<DateTime> tick = times_->AtOrBefore(std::min(before - seconds{1}, kLastSecond));
  const DateTime limit = tick.value_or(kFirstSecond) - kHorizon;
  while (tick && *tick >= limit) {
    const std::optional<local_days> day = days_.AtOrBefore(floor<days>(*tick));
    if (!day) return std::nullopt;
    if (*tick >= *day + days{1}) tick = times_->AtOrBefore(*day + days{1} - seconds{1});
    if (!tick || *tick >= *day) return tick;
  }
  return std::nullopt;
}

bool Schedule::IsRun(DateTime at) const {
  if (!times_ || at < kFirstSecond || at > kLastSecond) return false;
  return times_->AtOrAfter(at) == at && days_.Selects(floor<days>(at));
}

bool Schedule::TicksThrough(seconds change) const {
  return times_ && times_->Interval() && *times_->Interval() <= change;
}

// Every day has a tick if the interval is at most a day.
std::optional<Schedule::Gap> Schedule::LongGap(DateTime now) const {
  if (!times_ || times_->Step() <= days{1}) return std::nullopt;
  now = std::clamp(now, kFirstSecond, kLastSecond);
  const std::optional<DateTime> previous = Previous(now + seconds{1});
  Gap gap{previous.value_or(times_->AtOrAfter(kFirstSecond)), Next(now)};
  if (!previous && !gap.to) return std::nullopt;
  const DateTime limit = std::max(now, gap.from) + 10 * kYear;
  while (!IsLong(gap)) {
    if (!gap.to || *gap.to > limit) return std::nullopt;
    gap = {*gap.to, Next(*gap.to)};
  }
  return gap;
}

bool Schedule::IsLong(const Gap& gap) const {
  const DateTime end = gap.to.value_or(std::min(gap.from + kHorizon, kLastSecond));
  if (end - gap.from <= kYear) return false;
  const std::optional<local_days> day = days_.AtOrAfter(floor<days>(gap.from) + days{1});
  return day && *day < floor<days>(end) && times_->AtOrAfter(gap.from + seconds{1}) < end;
}

std::optional<int> Schedule::MovedFrom(local_days day) const {
  return days_.MovedFrom(day);
}

}  // namespace plovix
