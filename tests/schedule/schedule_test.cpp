// The runs of a schedule in wall times: tables of known runs, of records that never run, and the ends of all
// ranges.

#include <limits>

#include "schedule_support.h"

namespace plovix::schedule_tests {
namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::seconds;
using time_kind::kEveryNHours;
using time_kind::kEveryNMinutes;

constexpr DateTime kEarliest = DateTime::min();
constexpr ShortMonth kSkip = ShortMonth::kSkip;
const DailyRecord kDaily{1, false};

// What recurrence rules cannot say: moved days, unset and unused values, seconds, long ticks.
TEST(Schedule, RunsAsTheRecordSays) {
  const WeeklyRecord mondays{0, {false, true}};
  const DayChoice unset{true, 0, 0, 0}, unused_week{false, 7, -1, 99}, unused_day{true, 99, 0, 2};
  const struct {
    const char* start;
    RecurrenceRecord record;
    std::string runs;  // the first ones; for a moved one the wanted day
    ShortMonth short_month = ShortMonth::kLast;
  } cases[] = {
      {"2026-02-27", AtTime(DailyRecord{3}, "23:59:59"), "2026-02-27 23:59:59, 2026-03-02 23:59:59"},
      {"2026-02-28", AtTime(DailyRecord{}), "2026-02-28 08:00, 2026-03-01 08:00"},
      {"2026-02-28", {0, 0, 0, Time("2026-03-05 08:00"), kDaily}, "2026-02-28 08:00, 2026-03-01 08:00"},
      {"2026-01-31", AtTime(MonthlyRecord{1, OnDay(31)}), "2026-01-31 08:00, 2026-02-28 08:00 for 31"},
      {"2026-08-01", AtTime(MonthlyRecord{0, unset}), "2026-08-02 08:00, 2026-09-06 08:00"},
      {"2026-03-01", AtTime(MonthlyRecord{1, unused_week}), "2026-03-07 08:00"},
      {"2026-03-01", AtTime(MonthlyRecord{1, unused_day}), "2026-03-02 08:00"},
      {"1899-03-01", AtTime(YearlyRecord{2, OnDay(29)}), "1900-02-28 08:00 for 29, 1901-02-28 08:00 for 29"},
      {"2026-03-01", Every(48, kEveryNHours, mondays), "2026-03-09 00:00, 2026-03-23 00:00"},
      {"2026-03-01", Every(0, kEveryNMinutes, YearlyRecord{}), "2027-01-01 00:00, 2027-01-01 00:01"},
      {"2026-01-31", AtTime(MonthlyRecord{1, OnDay(31)}), "2026-01-31 08:00, 2026-03-31 08:00", kSkip},
      {"2026-02-01", AtTime(MonthlyRecord{2, OnDay(31)}), "2026-08-31 08:00, 2026-10-31 08:00", kSkip},
      {"1896-02-29", AtTime(YearlyRecord{2, OnDay(29)}), "1896-02-29 08:00, 1904-02-29 08:00", kSkip},
      {"2025-02-01", AtTime(MonthlyRecord{300, OnDay(29)}), "2400-02-29 08:00, 2800-02-29 08:00", kSkip},
      {"2026-02-01", AtTime(MonthlyRecord{1, OnThe(4, 6)}), "2026-02-27 08:00, 2026-03-27 08:00", kSkip},
  };
  for (const auto& c : cases) {
    const Schedule schedule(c.record, Day(c.start), c.short_month);
    std::vector<DateTime> runs;
    std::string text;
    for (DateTime at = kEarliest; text.size() < c.runs.size(); at = runs.back()) {
      ASSERT_TRUE(schedule.Next(at)) << c.runs;
      runs.push_back(*schedule.Next(at));
      text += (text.empty() ? "" : ", ") + Text(runs.back());
      if (const auto wanted = schedule.MovedFrom(std::chrono::floor<days>(runs.back())))
        text += " for " + std::to_string(*wanted);
    }
    EXPECT_EQ(text, c.runs);
    EXPECT_EQ(WrongRun(schedule, runs), "") << c.runs;
    EXPECT_EQ(schedule.MovedFrom(Day("2026-04-29")), std::nullopt) << c.runs;
  }
}

TEST(Schedule, NeverRuns) {
  const WeeklyRecord no_day{1, {}}, tuesdays{1, {false, false, true}}, negative_weeks{-1, {true}};
  std::vector<RecurrenceRecord> records{Every(168, kEveryNHours, tuesdays),
                                        Every(70'561, kEveryNMinutes, tuesdays),  // not for 580 years
                                        Every(10'080, kEveryNMinutes, DailyRecord{1, true}),
                                        Every(-1, kEveryNMinutes, kDaily),
                                        Every(-1, kEveryNHours, kDaily),
                                        Every(1, 3, kDaily),
                                        Every(1, -1, kDaily)};
  for (const PatternRecord& pattern : std::initializer_list<PatternRecord>{
           PatternRecord{}, no_day, DailyRecord{14, true}, DailyRecord{-1}, negative_weeks,
           MonthlyRecord{-1, OnDay(1)}, MonthlyRecord{1, OnDay(32)}, YearlyRecord{1, OnDay(-1)},
           YearlyRecord{13, OnDay(1)}, YearlyRecord{-1, OnDay(1)}, MonthlyRecord{1, OnThe(5, 1)},
           MonthlyRecord{1, OnThe(-1, 1)}, YearlyRecord{1, OnThe(0, 11)}, YearlyRecord{1, OnThe(0, -1)}})
    records.push_back(AtTime(pattern));
  const local_days start = Day("2026-03-07");  // a Saturday
  for (const RecurrenceRecord& record : records) {
    const Schedule schedule(record, start);
    EXPECT_FALSE(schedule.Next(kEarliest) || schedule.Previous(DateTime::max()) || schedule.IsRun(start) ||
                 schedule.MovedFrom(Day("2026-04-30")))
        << "record " << &record - records.data();
  }
  for (const PatternRecord& pattern : std::initializer_list<PatternRecord>{
           YearlyRecord{2, OnDay(30)}, YearlyRecord{4, OnDay(31)}, MonthlyRecord{12, OnDay(30)},
           MonthlyRecord{48, OnDay(29)}, MonthlyRecord{65'546 * 12, OnDay(29)}}) {
    const Schedule schedule(AtTime(pattern), Day("2026-02-07"), kSkip);
    EXPECT_FALSE(schedule.Next(kEarliest) || schedule.Previous(DateTime::max()));
  }
}

TEST(Schedule, HoldsAtTheEndsOfAllRanges) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  const DateTime queries[] = {kEarliest,          kEarliest + seconds{1},      Time("-9999-01-01"),
                              Time("2026-03-07"), Time("9999-12-31 23:59:59"), DateTime::max() - seconds{1},
                              DateTime::max()};
  int runs = 0;
  const auto check = [&](const RecurrenceRecord& record) {
    for (const local_days start : {local_days::min(), Day("-9999-01-01"), Day("2026-03-07"),
                                   Day("9999-12-31"), local_days{days{kMost}}, local_days::max()}) {
      const Schedule schedule(record, start);
      for (const DateTime query : queries) {
        const auto next = schedule.Next(query), previous = schedule.Previous(query);
        EXPECT_TRUE(!next ||
                    (*next > query && *next >= start && schedule.Previous(*next + seconds{1}) == next));
        EXPECT_TRUE(!previous || (*previous < query && schedule.IsRun(*previous)));
        runs += next.has_value();
      }
    }
  };
  for (const std::int32_t n : {kLeast, kLeast + 1, -1, 0, 1, 7, kMost - 1, kMost})
    for (const PatternRecord& pattern : std::initializer_list<PatternRecord>{
             DailyRecord{n}, DailyRecord{n, true}, WeeklyRecord{n, {true}}, MonthlyRecord{n, OnDay(31)},
             MonthlyRecord{1, OnDay(n)}, MonthlyRecord{n, OnThe(4, 10)}, MonthlyRecord{1, OnThe(n, n)},
             YearlyRecord{n, OnDay(n)}, YearlyRecord{12, OnThe(4, 9)}}) {
      for (const std::int32_t kind : {0, 1, 2, n}) check(Every(n, kind, pattern));
      check({n, 0, n, kEarliest, pattern});
      check({n, 0, n, DateTime::max(), pattern});
    }
  EXPECT_GT(runs, 1000);
  const Schedule all(Every(1, 0, kDaily), Day("-9999-01-01"));
  EXPECT_EQ(all.Next(kEarliest), Time("-9999-01-01"));
  EXPECT_EQ(all.Previous(DateTime::max()), Time("9999-12-31"));
  EXPECT_FALSE(Schedule(Every(1, 0, DailyRecord{kMost}), Day("-9999-01-01")).Next(Time("-9999-01-01")));
  const Schedule last(AtTime(MonthlyRecord{1, OnDay(31)}, "23:59:59"), Day("9999-01-01"));
  EXPECT_TRUE(last.IsRun(Time("9999-12-31 23:59:59")));
  // 65,546 years on, which a year of 16 bits takes for ten.
  const Schedule far(AtTime(MonthlyRecord{65'546 * 12, OnDay(1)}), Day("2026-03-01"));
  EXPECT_FALSE(far.Next(Time("2026-03-02")));
}

}  // namespace
}  // namespace plovix::schedule_tests
