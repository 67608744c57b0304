// Comparison with another implementation of recurrence rules, which knows the days; ticks are counted one by
// one.
#include <libical/ical.h>

#include "schedule_support.h"

namespace plovix::schedule_tests {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::year_month_day;

constexpr const char* kDayNames[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
constexpr const char* kWeekdays = "MO,TU,WE,TH,FR";

// A rule and the day from which libical counts its intervals; its runs before the schedule's start are
// dropped.
struct Rule {
  std::string text;
  local_days origin;
};

std::string DayPart(const DayChoice& day, ShortMonth short_month) {
  const std::string last = ";BYSETPOS=-1";
  if (!day.use_relative_day) {
    if (day.day_of_month <= 28 || short_month == ShortMonth::kSkip)
      return ";BYMONTHDAY=" + std::to_string(day.day_of_month);
    std::string part = ";BYMONTHDAY=28";
    for (int n = 29; n <= day.day_of_month; ++n) part += "," + std::to_string(n);
    return part + last;
  }
  const std::string position = day.relative_week == 4 ? "-1" : std::to_string(day.relative_week + 1);
  const int kind = day.relative_day_of_week;
  if (kind < 8) return ";BYDAY=" + position + kDayNames[kind - 1];
  if (kind == 8) return ";BYMONTHDAY=" + position;
  return std::string(";BYDAY=") + (kind == 9 ? kWeekdays : "SA,SU") + ";BYSETPOS=" + position;
}

struct RuleOf {
  local_days start;
  ShortMonth short_month;

  Rule operator()(const std::monostate&) const { return {}; }
  Rule operator()(const DailyRecord& r) const {
    const std::string by_day = r.weekdays_only ? std::string(";BYDAY=") + kWeekdays : "";
    return {"FREQ=DAILY;INTERVAL=" + std::to_string(r.every_n_days) + by_day, start};
  }
  Rule operator()(const WeeklyRecord& r) const {
    std::string names;
    for (std::size_t day = 0; day < 7; ++day)
      if (r.days.at(day)) names += (names.empty() ? "" : ",") + std::string(kDayNames[day]);
    return {"FREQ=WEEKLY;WKST=SU;INTERVAL=" + std::to_string(r.every_n_weeks) + ";BYDAY=" + names,
            start - (std::chrono::weekday{start} - std::chrono::Sunday)};
  }
  Rule operator()(const MonthlyRecord& r) const {
    const year_month_day date{start};
    return {"FREQ=MONTHLY;INTERVAL=" + std::to_string(r.every_n_months) + DayPart(r.day, short_month),
            local_days{date.year() / date.month() / 1}};
  }
  Rule operator()(const YearlyRecord& r) const {
    return {"FREQ=YEARLY;BYMONTH=" + std::to_string(r.month) + DayPart(r.day, short_month),
            local_days{year_month_day{start}.year() / 1 / 1}};
  }
};

// The first days that a pattern selects, as libical knows them.
std::vector<local_days> SelectedDays(const Rule& rule, local_days start) {
  const year_month_day origin{rule.origin};
  // A date with a time: of a date alone libical looks for ever for a rule that never runs.
  icaltimetype first = icaltime_null_time();
  first.year = int{origin.year()};
  first.month = static_cast<int>(unsigned{origin.month()});
  first.day = static_cast<int>(unsigned{origin.day()});
  icalrecur_iterator* iterator =
      icalrecur_iterator_new(icalrecurrencetype_from_string(rule.text.c_str()), first);
  std::vector<local_days> selected;
  while (selected.size() < 40) {
    const icaltimetype next = icalrecur_iterator_next(iterator);
    if (icaltime_is_null_time(next) != 0) break;  // never again
    const local_days day{std::chrono::year{next.year} / next.month / next.day};
    if (day >= start) selected.push_back(day);
  }
  icalrecur_iterator_free(iterator);
  return selected;
}

TEST(Schedule, RunsOnTheDaysOfRecurrenceRules) {
  std::mt19937 random(2);
  for (int number = 0; number < 1000; ++number) {
    const PatternRecord pattern = AnyPattern(random);
    const local_days start = Day("1995-01-01") + days{random() % 20'000};
    const ShortMonth short_month = random() % 2 == 0 ? ShortMonth::kLast : ShortMonth::kSkip;
    const Rule rule = std::visit(RuleOf{start, short_month}, pattern);
    constexpr int kIntervals[] = {90, 300, 780, 1439, 1440, 1441, 1500, 2880, 2940, 4321, 10'080, 60'000};
    const std::chrono::minutes interval{kIntervals[random() % std::size(kIntervals)]};
    std::vector<DateTime> at_time, ticks;
    DateTime tick = start;
    for (const local_days day : SelectedDays(rule, start)) {
      at_time.emplace_back(day + std::chrono::hours{8});
      while (tick < day) tick += interval;
      for (; tick < day + days{1}; tick += interval) ticks.push_back(tick);
    }
    const Schedule schedule(AtTime(pattern), start, short_month);
    const Schedule ticking(Every(static_cast<std::int32_t>(interval.count()), 1, pattern), start,
                           short_month);
    EXPECT_EQ(schedule.Next(DateTime::min()).has_value(), !at_time.empty()) << rule.text;
    EXPECT_EQ(WrongRun(schedule, at_time), "") << rule.text << " from " << Text(DateTime{start});
    EXPECT_EQ(WrongRun(ticking, ticks), "") << rule.text << " ticks " << interval.count() << " minutes";
  }
}

}  // namespace
}  // namespace plovix::schedule_tests
