#include "day_rule.h"

#include <algorithm>
#include <bit>

#include "calendar_range.h"

namespace plovix {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::weekday;
using std::chrono::year_month;
using std::chrono::year_month_day;

using MaybeDay = std::optional<local_days>;

// For numbers from 0 and divisors from 1 on.
std::int64_t RoundedUpQuotient(std::int64_t number, std::int64_t divisor) {
  return (number + divisor - 1) / divisor;
}

std::int64_t WithDefault(std::int32_t number) {
  return number == 0 ? 1 : number;
}

bool IsWeekend(local_days day) {
  const weekday name{day};
  return name == std::chrono::Saturday || name == std::chrono::Sunday;
}

// Months are counted from January of the year before kFirstYear, so that the number is never negative for a
// requested day or for the first month of a yearly rule.
constexpr std::int64_t kMonthOrigin = int{kFirstYear} - 1;

std::int64_t MonthNumber(std::chrono::year year, std::int64_t month) {
  return (int{year} - kMonthOrigin) * 12 + month - 1;
}

std::int64_t MonthNumber(local_days day) {
  const year_month_day date{day};
  return MonthNumber(date.year(), unsigned{date.month()});
}

// Nothing after kLastYear.
std::optional<year_month> MonthOf(std::int64_t number) {
  const std::int64_t year = number / 12 + kMonthOrigin;
  if (year > int{kLastYear}) return std::nullopt;
  return std::chrono::year{static_cast<int>(year)} / static_cast<int>(number % 12 + 1);
}

}  // namespace

DayRule::DayRule(const PatternRecord& pattern, local_days start, ShortMonth short_month)
    : kind_(std::visit([&](const auto& record) { return KindOf(record, start, short_month); }, pattern)),
      start_(start) {}

DayRule::Kind DayRule::KindOf(const std::monostate& /*pattern*/, local_days /*start*/,
                              ShortMonth /*short_month*/) {
  return None{};
}

DayRule::Kind DayRule::KindOf(const DailyRecord& pattern, local_days start, ShortMonth /*short_month*/) {
  const std::int64_t step = WithDefault(pattern.every_n_days);
  if (step < 0) return None{};
  return Daily{start, step, pattern.weekdays_only};
}

DayRule::Kind DayRule::KindOf(const WeeklyRecord& pattern, local_days start, ShortMonth /*short_month*/) {
  const std::int64_t step = WithDefault(pattern.every_n_weeks);
  unsigned day_set = 0;
  for (std::size_t day = 0; day < pattern.days.size(); ++day) day_set |= unsigned{pattern.days[day]} << day;
  if (step < 0 || day_set == 0) return None{};
  return Weekly{start - (weekday{start} - std::chrono::Sunday), step, day_set};
}

DayRule::Kind DayRule::KindOf(const MonthlyRecord& pattern, local_days start, ShortMonth short_month) {
  const std::int64_t step = WithDefault(pattern.every_n_months);
  const std::optional<DayInMonth> day = DayInMonth::From(pattern.day, short_month);
  if (step < 0 || !day) return None{};
  const Months months{MonthNumber(start), step, *day};
  return months.HasRuns() ? Kind{months} : None{};
}

DayRule::Kind DayRule::KindOf(const YearlyRecord& pattern, local_days start, ShortMonth short_month) {
  const std::int64_t month = WithDefault(pattern.month);
  const std::optional<DayInMonth> day = DayInMonth::From(pattern.day, short_month);
  if (month < 1 || month > 12 || !day) return None{};
  const Months months{MonthNumber(year_month_day{start}.year() - std::chrono::years{1}, month), 12, *day};
  return months.HasRuns() ? Kind{months} : None{};
}

MaybeDay DayRule::AtOrAfter(local_days day) const {
  if (day > kLastDay) return std::nullopt;
  day = std::max(day, start_);
  const MaybeDay found = std::visit([&](const auto& kind) { return kind.AtOrAfter(day); }, kind_);
  return found && *found <= kLastDay ? found : std::nullopt;
}

MaybeDay DayRule::AtOrBefore(local_days day) const {
  if (day < start_) return std::nullopt;
  day = std::min(day, kLastDay);
  const MaybeDay found = std::visit([&](const auto& kind) { return kind.AtOrBefore(day); }, kind_);
  return found && *found >= start_ ? found : std::nullopt;
}

bool DayRule::Selects(local_days day) const {
  return day >= start_ && AtOrAfter(day) == day;
}

std::optional<int> DayRule::MovedFrom(local_days day) const {
  const auto* months = std::get_if<Months>(&kind_);
  if (months == nullptr) return std::nullopt;
  const year_month_day date{day};
  const std::optional<int> missing = months->day_in_month.MissingIn(date.year() / date.month());
  return missing && Selects(day) ? missing : std::nullopt;
}

// Three steps are enough for Monday to Friday: either at most two consecutive days of the sequence fall on a
// weekend, or all of them do.
MaybeDay DayRule::Daily::AtOrAfter(local_days day) const {
  local_days found = start + days{RoundedUpQuotient((day - start).count(), step) * step};
  for (int tries = 0; weekdays_only && IsWeekend(found); ++tries) {
    if (tries == 2) return std::nullopt;
    found += days{step};
  }
  return found;
}

MaybeDay DayRule::Daily::AtOrBefore(local_days day) const {
  local_days found = start + days{(day - start).count() / step * step};
  for (int tries = 0; weekdays_only && IsWeekend(found); ++tries) {
    if (tries == 2) return std::nullopt;
    found -= days{step};
  }
  return found;
}

MaybeDay DayRule::Weekly::AtOrAfter(local_days day) const {
  const std::int64_t since = (day - first_sunday).count();
  const std::int64_t week = RoundedUpQuotient(since / 7, step) * step;
  // If `day` is in an unselected week before the selected one, the whole set remains.
  const std::int64_t passed = std::max<std::int64_t>(since - week * 7, 0);
  const unsigned left = day_set >> passed << passed;
  if (left != 0) return first_sunday + days{week * 7 + std::countr_zero(left)};
  return first_sunday + days{(week + step) * 7 + std::countr_zero(day_set)};
}

MaybeDay DayRule::Weekly::AtOrBefore(local_days day) const {
  const std::int64_t since = (day - first_sunday).count();
  const std::int64_t week = since / 7 / step * step;
  const std::int64_t reached = std::min<std::int64_t>(since - week * 7, 6);
  const unsigned left = day_set & ((2U << reached) - 1);
  if (left != 0) return first_sunday + days{week * 7 + std::bit_width(left) - 1};
  return first_sunday + days{(week - step) * 7 + std::bit_width(day_set) - 1};
}

// Twelve steps reach every month of the year that they can. If that is February alone, 400 of them pass every
// kind of year.
bool DayRule::Months::HasRuns() const {
  constexpr std::int64_t kMostSteps = 400;
  for (std::int64_t count = 0; count < kMostSteps; ++count) {
    const std::optional<year_month> month = MonthOf(first_month + count * step);
    if (!month) return false;
    if (day_in_month.In(*month)) return true;
  }
  return false;
}

MaybeDay DayRule::Months::AtOrAfter(local_days day) const {
  for (std::int64_t count = RoundedUpQuotient(MonthNumber(day) - first_month, step);; ++count) {
    const std::optional<year_month> month = MonthOf(first_month + count * step);
    if (!month) return std::nullopt;
    if (const MaybeDay found = day_in_month.In(*month); found && *found >= day) return found;
  }
}

MaybeDay DayRule::Months::AtOrBefore(local_days day) const {
  for (std::int64_t count = (MonthNumber(day) - first_month) / step; count >= 0; --count) {
    const std::optional<year_month> month = MonthOf(first_month + count * step);
    if (const MaybeDay found = day_in_month.In(*month); found && *found <= day) return found;
  }
  return std::nullopt;
}

}  // namespace plovix
