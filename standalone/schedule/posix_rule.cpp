#include "posix_rule.h"

#include <algorithm>
#include <array>

#include "calendar_range.h"

namespace plovix {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::local_days;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr sys_seconds kBeforeAll{(kFirstDay - days{800}).time_since_epoch()};
constexpr sys_seconds kAfterAll{(kLastDay + days{800}).time_since_epoch()};

bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

// Reads a rule from left to right; remembers a failure, after which nothing counts.
class PosixRule::Reader {
 public:
  explicit Reader(std::string_view text) : left_(text) {}

  [[nodiscard]] bool Failed() const { return failed_; }
  [[nodiscard]] bool AtEnd() const { return left_.empty(); }
  [[nodiscard]] bool Sees(char c) const { return !left_.empty() && left_.front() == c; }

  bool Took(char c) {
    if (!Sees(c)) return false;
    left_.remove_prefix(1);
    return true;
  }

  void Expect(char c) { failed_ |= !Took(c); }

  // At least three characters: letters, or anything in angle brackets.
  std::string Abbreviation() {
    const bool quoted = Took('<');
    const auto end =
        std::find_if(left_.begin(), left_.end(), [&](char c) { return quoted ? c == '>' : !IsLetter(c); });
    std::string name(left_.begin(), end);
    left_.remove_prefix(name.size());
    if (quoted) Expect('>');
    failed_ |= name.size() < 3;
    return name;
  }

  int Number(int low, int high) {
    int number = 0;
    failed_ |= AtEnd() || !IsDigit(left_.front());
    while (!AtEnd() && IsDigit(left_.front()) && number <= high) {
      number = number * 10 + (left_.front() - '0');
      left_.remove_prefix(1);
    }
    failed_ |= number < low || number > high;
    return number;
  }

  // [+-]hours[:minutes[:seconds]]
  seconds Time(int most_hours) {
    const bool negative = Took('-');
    if (!negative) Took('+');
    seconds time = hours{Number(0, most_hours)};
    if (Took(':')) time += minutes{Number(0, 59)};
    if (Took(':')) time += seconds{Number(0, 59)};
    return negative ? -time : time;
  }

  Change ReadChange() {
    Change change;
    if (Took('M')) {
      change.kind = Change::Kind::kWeekdayOfMonth;
      change.month = Number(1, 12);
      Expect('.');
      change.week = Number(1, 5);
      Expect('.');
      change.weekday = Number(0, 6);
    } else if (Took('J')) {
      change.kind = Change::Kind::kDayWithoutLeap;
      change.day = Number(1, 365);
    } else {
      change.day = Number(0, 365);
    }
    change.time = Took('/') ? Time(167) : hours{2};
    return change;
  }

  // An offset in a rule is UTC less wall time.
  LocalTime ReadLocalTime(std::optional<seconds> offset_if_missing) {
    LocalTime time{Abbreviation(), {}};
    if (offset_if_missing && (AtEnd() || Sees(',')))
      time.offset = *offset_if_missing;
    else
      time.offset = -Time(24);
    return time;
  }

 private:
  std::string_view left_;
  bool failed_ = false;
};

std::optional<PosixRule> PosixRule::Parse(std::string_view text) {
  Reader reader(text);
  PosixRule rule;
  rule.standard_ = reader.ReadLocalTime(std::nullopt);
  if (!reader.AtEnd()) {
    Summer summer;
    summer.time = reader.ReadLocalTime(rule.standard_.offset + hours{1});
    Reader customary(",M3.2.0,M11.1.0");
    Reader& changes = reader.AtEnd() ? customary : reader;
    changes.Expect(',');
    summer.begin = changes.ReadChange();
    changes.Expect(',');
    summer.end = changes.ReadChange();
    rule.summer_ = summer;
  }
  if (reader.Failed() || !reader.AtEnd()) return std::nullopt;
  return rule;
}

std::chrono::local_seconds PosixRule::Change::In(std::chrono::year year) const {
  const local_days new_year{year / 1 / 1};
  switch (kind) {
    case Kind::kDayOfYear:
      return new_year + days{day} + time;
    case Kind::kDayWithoutLeap:
      return new_year + days{day - (year.is_leap() && day >= 60 ? 0 : 1)} + time;
    case Kind::kWeekdayOfMonth:
      break;
  }
  const std::chrono::weekday name{static_cast<unsigned>(weekday)};
  if (week == 5) return local_days{year / month / name[std::chrono::last]} + time;
  return local_days{year / month / name[static_cast<unsigned>(week)]} + time;
}

OffsetPeriod PosixRule::At(sys_seconds at) const {
  OffsetPeriod period{kBeforeAll, kAfterAll, standard_.offset, standard_.abbreviation};
  if (!summer_) return period;
  // The changes of the year and its neighbours: enough, whatever the offset and the time of a change.
  struct Instant {
    sys_seconds at;
    bool to_summer;
  };
  std::array<Instant, 6> changes{};
  auto change = changes.begin();
  const std::chrono::year_month_day date{std::chrono::floor<days>(at)};
  for (const int distance : {-1, 0, 1}) {
    const std::chrono::year year = date.year() + std::chrono::years{distance};
    const auto begin = summer_->begin.In(year) - standard_.offset;
    const auto end = summer_->end.In(year) - summer_->time.offset;
    *change++ = {sys_seconds{begin.time_since_epoch()}, true};
    *change++ = {sys_seconds{end.time_since_epoch()}, false};
  }
  // Stable: a summer time that begins as the last year's ends goes on.
  std::stable_sort(changes.begin(), changes.end(),
                   [](const Instant& left, const Instant& right) { return left.at < right.at; });
  const auto next = std::find_if(changes.begin(), changes.end(), [&](const Instant& i) { return i.at > at; });
  if (next != changes.end()) period.end = next->at;
  if (next != changes.begin()) period.begin = std::prev(next)->at;
  if (next != changes.begin() && std::prev(next)->to_summer) {
    period.offset = summer_->time.offset;
    period.abbreviation = summer_->time.abbreviation;
  }
  return period;
}

}  // namespace plovix
