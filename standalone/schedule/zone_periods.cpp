#include "zone_periods.h"

#include <QDateTime>
#include <QTimeZone>
#include <algorithm>

namespace plovix {
namespace {

using std::chrono::days;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;
using std::chrono::year;

// Before every transition in a zone's file. QTimeZone does not return if it searches for the transitions of a
// rule near the year 0, so this instant replaces earlier ones.
constexpr sys_seconds kFirstAsked{sys_days{year{1800} / 1 / 1}};

// From this year on, which is after every change that a zone's file lists, only a rule of the calendar goes
// on to change the clocks. The calendar with its days of the week repeats after 400 years.
constexpr sys_seconds kRuleBegin{sys_days{year{2100} / 1 / 1}};
constexpr days kCycle{146'097};

QDateTime ToQt(sys_seconds at) {
  return QDateTime::fromSecsSinceEpoch(at.time_since_epoch().count(), Qt::UTC);
}

}  // namespace

// The next change is asked for from a second after the last one on: from the last one that a file lists on,
// QTimeZone would not know those of the rule.
ZonePeriods::ZonePeriods(const QTimeZone& zone) {
  const QDateTime first = ToQt(kFirstAsked);
  changes_.push_back(
      {kFirstInstant, seconds{zone.offsetFromUtc(first)}, zone.abbreviation(first).toStdString()});
  for (sys_seconds asked = kFirstAsked;; asked = changes_.back().at + seconds{1}) {
    const QTimeZone::OffsetData next = zone.nextTransition(ToQt(asked));
    const sys_seconds at{seconds{next.atUtc.toSecsSinceEpoch()}};
    if (!next.atUtc.isValid() || at >= kRuleBegin + kCycle) break;
    if (at < kRuleBegin) repeated_ = changes_.size();
    changes_.push_back({at, seconds{next.offsetFromUtc}, next.abbreviation.toStdString()});
  }
  ++repeated_;
}

ZonePeriod ZonePeriods::At(sys_seconds at) const {
  at = std::clamp(at, kFirstInstant, kLastInstant);
  const bool repeats = repeated_ < changes_.size();
  days shift{0};
  if (repeats && at >= kRuleBegin + kCycle) shift = (at - kRuleBegin) / kCycle * kCycle;
  const auto after = std::ranges::upper_bound(changes_, at - shift, {}, &Change::at);
  const auto change = std::prev(after);
  ZonePeriod period{.begin = change->at + shift,
                    .end = kLastInstant + seconds{1},
                    .offset = change->offset,
                    .before = change == changes_.begin() ? change->offset : std::prev(change)->offset,
                    .abbreviation = change->abbreviation};
  if (after != changes_.end())
    period.end = after->at + shift;
  else if (repeats)
    period.end = changes_[repeated_].at + kCycle + shift;
  return period;
}

}  // namespace plovix
