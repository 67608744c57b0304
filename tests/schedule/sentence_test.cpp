// Which text, with which parameters, a schedule and a run's note are; and how some of them read.
#include <gtest/gtest.h>
#include <plovix/standalone/language/languages.h>
#include <plovix/standalone/schedule/sentence.h>

#include "schedule_support.h"

namespace plovix::schedule_tests {
namespace {

using namespace std::chrono_literals;
using std::chrono::local_days;

constexpr local_days kStart{2026y / 1 / 5};

// Weeks and a week's days as 0 and 1, Sunday first.
WeeklyRecord Weekly(int weeks, const std::string& days) {
  WeeklyRecord record{.every_n_weeks = weeks};
  for (std::size_t i = 0; i < days.size(); ++i) record.days.at(i) = days[i] == '1';
  return record;
}

TEST(ScheduleSentence, SaysThePatternWithEveryTime) {
  const std::string monday = "[schedule.weekday.monday]", friday = "[schedule.weekday.friday]",
                    sunday = "[schedule.weekday.sunday]", first = "[schedule.relative.first.monday]",
                    last = "[schedule.relative.last.day]", one = "[schedule.dayOne]";
  const struct {
    PatternRecord pattern;
    std::string key;
    std::vector<std::string> parameters;
  } cases[] = {
      {DailyRecord{}, "daily.day", {}},
      {DailyRecord{1'000'000}, "daily.days", {"1000000"}},
      {DailyRecord{1, true}, "daily.weekday", {}},
      {DailyRecord{3, true}, "daily.daysOnWeekdays", {"3"}},
      {Weekly(0, "0100000"), "weekly.week", {monday}},
      {Weekly(2, "0100010"), "weekly.weeks", {"2", BracketedText("schedule.days.two", {monday, friday})}},
      {Weekly(1, "1100010"),
       "weekly.week",
       {BracketedText("schedule.days.last",
                      {BracketedText("schedule.days.next", {sunday, monday}), friday})}},
      {Weekly(1, "1111111"), "daily.day", {}},
      {Weekly(2, "1111111"), "weekly.weeksEveryDay", {"2"}},
      {MonthlyRecord{0, OnDay(0)}, "monthly.month", {one}},
      {MonthlyRecord{1, OnDay(28)}, "monthly.month", {"28"}},
      {MonthlyRecord{1, OnDay(29)}, "monthly.monthOrLastDay", {"29"}},
      {MonthlyRecord{6, OnDay(28)}, "monthly.months", {"6", "28"}},
      {MonthlyRecord{6, OnDay(29)}, "monthly.monthsOrLastDay", {"6", "29"}},
      {MonthlyRecord{1, OnThe(0, 2)}, "monthly.monthRelative", {first}},
      {MonthlyRecord{2, OnThe(0, 0)}, "monthly.monthsRelative", {"2", "[schedule.relative.first.sunday]"}},
      {YearlyRecord{0, OnDay(0)}, "yearly.date", {BracketedText("schedule.date.january", {one})}},
      {YearlyRecord{12, OnDay(31)}, "yearly.date", {"[schedule.date.december:31]"}},
      {YearlyRecord{2, OnDay(29)}, "yearly.leapDay", {}},
      {YearlyRecord{2, OnDay(30)}, "yearly.relative", {last, "[schedule.ofMonth.february]"}},
      {YearlyRecord{4, OnDay(31)}, "yearly.relative", {last, "[schedule.ofMonth.april]"}},
      {YearlyRecord{10, OnThe(0, 2)}, "yearly.relative", {first, "[schedule.ofMonth.october]"}}};
  const struct {
    std::int32_t kind, interval;
    std::string key;
    std::vector<std::string> parameter;
  } times[] = {{time_kind::kAtTime, 7, ".at", {"08:00"}},
               {time_kind::kEveryNMinutes, 0, ".minute", {}},
               {time_kind::kEveryNMinutes, 90, ".minutes", {"90"}},
               {time_kind::kEveryNHours, 1, ".hour", {}},
               {time_kind::kEveryNHours, 13, ".hours", {"13"}}};
  for (const auto& [pattern, pattern_key, parameters] : cases) {
    for (const auto& [kind, interval, time_key, parameter] : times) {
      auto all = parameters;
      all.insert(all.end(), parameter.begin(), parameter.end());
      RecurrenceRecord record = AtTime(pattern);
      record.time_kind = kind;
      record.interval = interval;
      EXPECT_EQ(ScheduleSentence(record, kStart, TextTable::Ids()),
                BracketedText("schedule." + pattern_key + time_key, all));
    }
  }
}

TEST(ScheduleSentence, SaysOddTimesAndWhyNothingRuns) {
  const std::vector<std::pair<std::optional<RecurrenceRecord>, std::string>> cases = {
      {AtTime(DailyRecord{}, "10:59:09"), "[schedule.daily.day.at:10:59:09]"},
      {RecurrenceRecord{.execution_time = DateTime::min(), .pattern = DailyRecord{}},
       "[schedule.daily.day.at:08:29:52]"},
      {std::nullopt, "[schedule.none]"},
      {RecurrenceRecord{}, "[schedule.incomplete]"},
      {AtTime(Weekly(2, "0000000")), "[schedule.neverWithoutDays]"},
      {AtTime(MonthlyRecord{1, OnThe(5, 1)}), "[schedule.never]"},
      {Every(1, 3, DailyRecord{}), "[schedule.never]"},
      // Ticks lie an even number of days after the start, the Tuesdays of every other week an odd one.
      {Every(48, time_kind::kEveryNHours, Weekly(2, "0010000")), "[schedule.never]"}};
  for (const auto& [record, key] : cases) {
    EXPECT_EQ(ScheduleSentence(record, kStart, TextTable::Ids()), key);
  }
  constexpr local_days kLast{9999y / 12 / 31};  // with a single run
  EXPECT_EQ(ScheduleSentence(AtTime(DailyRecord{}, "00:00"), kLast, TextTable::Ids()),
            "[schedule.daily.day.at:00:00]");
}

// The pages' texts name the same days and months.
TEST(ScheduleSentence, NamesDaysAndMonthsAsThePagesDo) {
  const struct {
    std::string code, week, month, year, at;  // what stands before the phrase, and after it
  } languages[] = {
      {"en", "Every week on ", "Every month on the ", "Every year on ", ", at 08:00"},
      {"fr", "Toutes les semaines, le ", "Tous les mois, le ", "Tous les ans, le ", ", à 08:00"}};
  for (const auto& [code, week, month, year, at] : languages) {
    const TextTable texts = LoadLanguage(code);
    const auto page_text = [&](int id) { return texts.Find(id).value_or("missing"); };
    for (int day = 1; day <= 10; ++day) {
      for (int n = 0; n <= 4; ++n) {
        EXPECT_EQ(ScheduleSentence(AtTime(MonthlyRecord{1, OnThe(n, day)}), kStart, texts),
                  month + page_text(39 + n) + " " + page_text(43 + day) + at);
      }
      if (day > 7) continue;
      WeeklyRecord weekly;
      weekly.days.at(static_cast<std::size_t>(day - 1)) = true;
      EXPECT_EQ(ScheduleSentence(AtTime(weekly), kStart, texts), week + page_text(43 + day) + at);
    }
    for (int number = 1; number <= 12; ++number) {
      EXPECT_EQ(ScheduleSentence(AtTime(YearlyRecord{number, OnDay(15)}), kStart, texts),
                year + "15 " + page_text(98 + number) + at);
      const auto relative = ScheduleSentence(AtTime(YearlyRecord{number, OnThe(0, 1)}), kStart, texts);
      EXPECT_TRUE(relative.ends_with(page_text(98 + number) + at)) << relative;
    }
  }
}

TEST(RunNote, SaysWhatWasMoved) {
  const DateTime day = kStart;
  const std::string moved_day = "[schedule.note.day:31]", moved_time = "[schedule.note.time:02:30,03:30]";
  const struct {
    DateTime wanted, wall;
    std::optional<int> moved_from;
    std::optional<std::string> note;
  } cases[] = {{day + 8h, day + 8h, {}, {}},
               {day + 8h, day + 8h, 31, moved_day},
               {day + 150min, day + 210min, {}, moved_time},
               {day + 150min, day + 210min, 31, "[schedule.note.both:" + moved_day + "," + moved_time + "]"},
               {day - 30min, day + 30min, {}, "[schedule.note.timeOfDayBefore:23:30,00:30]"}};
  for (const auto& [wanted, wall, moved_from, note] : cases) {
    Zone::Moment moment{};
    moment.wall = wall;
    moment.shifted = wanted != wall;
    const plovix::Run run{.moment = moment, .wanted = wanted, .moved_from = moved_from};
    EXPECT_EQ(RunNote(run, TextTable::Ids()), note);
  }
}

}  // namespace
}  // namespace plovix::schedule_tests
