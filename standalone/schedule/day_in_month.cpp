#include "day_in_month.h"

#include <algorithm>

namespace plovix {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::weekday;
using std::chrono::year_month;

constexpr std::int32_t kLastWeek = 4;
constexpr std::int32_t kAnyDay = 8;
constexpr std::int32_t kWeekday = 9;
constexpr std::int32_t kWeekendDay = 10;

unsigned Length(year_month month) {
  return static_cast<unsigned>((month / std::chrono::last).day());
}

}  // namespace

std::optional<DayInMonth> DayInMonth::From(const DayChoice& choice, ShortMonth short_month) {
  DayInMonth rule;
  rule.short_month_ = short_month;
  rule.relative_ = choice.use_relative_day;
  if (!rule.relative_) {
    const std::int32_t day = choice.day_of_month == 0 ? 1 : choice.day_of_month;
    if (day < 1 || day > 31) return std::nullopt;
    rule.day_ = static_cast<unsigned>(day);
    return rule;
  }
  rule.week_ = choice.relative_week;
  if (rule.week_ < 0 || rule.week_ > kLastWeek) return std::nullopt;
  const std::int32_t kind = choice.relative_day_of_week == 0 ? 1 : choice.relative_day_of_week;
  if (kind < 1 || kind > kWeekendDay) return std::nullopt;
  if (kind < kAnyDay) {
    rule.kind_begin_ = weekday{static_cast<unsigned>(kind - 1)};
  } else {
    rule.kind_begin_ = kind == kWeekendDay ? std::chrono::Saturday : std::chrono::Monday;
    rule.kind_length_ = kind == kAnyDay ? 7 : kind == kWeekday ? 5 : 2;
  }
  return rule;
}

std::optional<local_days> DayInMonth::In(year_month month) const {
  if (relative_) return week_ == kLastWeek ? LastIn(month) : NthIn(month);
  if (short_month_ == ShortMonth::kSkip && MissingIn(month)) return std::nullopt;
  return local_days{month / static_cast<int>(std::min(day_, Length(month)))};
}

std::optional<int> DayInMonth::MissingIn(year_month month) const {
  if (relative_ || day_ <= Length(month)) return std::nullopt;
  return static_cast<int>(day_);
}

local_days DayInMonth::NthIn(year_month month) const {
  const local_days first{month / 1};
  const int into =
      static_cast<int>((weekday{first} - kind_begin_).count());  // days since the kind's week began
  const bool begun = into < kind_length_;
  const local_days begin = first + days{begun ? -into : 7 - into};
  const int index = week_ + (begun ? into : 0);  // counted from `begin`, in days of the kind
  return begin + days{index / kind_length_ * 7 + index % kind_length_};
}

local_days DayInMonth::LastIn(year_month month) const {
  const local_days last{month / std::chrono::last};
  const int into = static_cast<int>((weekday{last} - kind_begin_).count());
  return last - days{std::max(0, into - (kind_length_ - 1))};
}

}  // namespace plovix
