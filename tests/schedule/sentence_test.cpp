// Which text, with which parameters, a schedule and a run's note are; and how some of them read.
#include <gtest/gtest.h>
#include <plovix/standalone/language/languages.h>
#include <plovix/standalone/schedule/sentence.h>

#include <numeric>
namespace plovix {
namespace {

using namespace std::chrono_literals;
using std::chrono::local_days;

constexpr local_days kStart{2026y / 1 / 5};

RecurrenceRecord At(const PatternRecord& pattern, std::chrono::seconds time = 8h) {
  return {.execution_time = kZeroDate + time, .pattern = pattern};
}

RecurrenceRecord Every(int interval, std::int32_t kind, const PatternRecord& pattern) {
  return {.time_kind = kind, .interval = interval, .pattern = pattern};
}

// Weeks and a week's days as 0 and 1, Sunday first.
WeeklyRecord Weekly(int weeks, const std::string& days) {
  WeeklyRecord record{.every_n_weeks = weeks};
  for (std::size_t i = 0; i < days.size(); ++i) record.days.at(i) = days[i] == '1';
  return record;
}

DayChoice On(int day) {
  return {.day_of_month = day};
}

DayChoice OnThe(int week, int day_of_week) {
  return {.use_relative_day = true, .relative_week = week, .relative_day_of_week = day_of_week};
}

TEST(ScheduleSentence, SaysThePatternWithEveryTime) {
  struct Case {
    PatternRecord pattern;
    std::string key;
    std::vector<std::string> parameters;
  };
  const std::string monday = "[schedule.weekday.monday]", friday = "[schedule.weekday.friday]",
                    sunday = "[schedule.weekday.sunday]", first = "[schedule.relative.first.monday]",
                    last = "[schedule.relative.last.day]", one = "[schedule.dayOne]";
  const std::vector<Case> cases = {
      {DailyRecord{}, "daily.day", {}},
      {DailyRecord{3}, "daily.days", {"3"}},
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
      {MonthlyRecord{0, On(0)}, "monthly.month", {one}},
      {MonthlyRecord{1, On(28)}, "monthly.month", {"28"}},
      {MonthlyRecord{1, On(29)}, "monthly.monthOrLastDay", {"29"}},
      {MonthlyRecord{6, On(28)}, "monthly.months", {"6", "28"}},
      {MonthlyRecord{6, On(29)}, "monthly.monthsOrLastDay", {"6", "29"}},
      {MonthlyRecord{1, OnThe(0, 2)}, "monthly.monthRelative", {first}},
      {MonthlyRecord{2, OnThe(0, 0)}, "monthly.monthsRelative", {"2", "[schedule.relative.first.sunday]"}},
      {YearlyRecord{0, On(0)}, "yearly.date", {BracketedText("schedule.date.january", {one})}},
      {YearlyRecord{12, On(31)}, "yearly.date", {"[schedule.date.december:31]"}},
      {YearlyRecord{2, On(28)}, "yearly.date", {"[schedule.date.february:28]"}},
      {YearlyRecord{2, On(29)}, "yearly.leapDay", {}},
      {YearlyRecord{2, On(30)}, "yearly.relative", {last, "[schedule.ofMonth.february]"}},
      {YearlyRecord{4, On(31)}, "yearly.relative", {last, "[schedule.ofMonth.april]"}},
      {YearlyRecord{10, OnThe(0, 2)}, "yearly.relative", {first, "[schedule.ofMonth.october]"}}};
  struct Time {
    std::int32_t kind, interval;
    std::string key;
    std::vector<std::string> parameter;
  };
  const std::vector<Time> times = {{time_kind::kAtTime, 7, ".at", {"08:00"}},
                                   {time_kind::kEveryNMinutes, 0, ".minute", {}},
                                   {time_kind::kEveryNMinutes, 90, ".minutes", {"90"}},
                                   {time_kind::kEveryNHours, 1, ".hour", {}},
                                   {time_kind::kEveryNHours, 13, ".hours", {"13"}}};
  for (const auto& [pattern, pattern_key, parameters] : cases) {
    for (const auto& [kind, interval, time_key, parameter] : times) {
      std::string key = "schedule.";
      key.append(pattern_key).append(time_key);
      auto all = parameters;
      all.insert(all.end(), parameter.begin(), parameter.end());
      EXPECT_EQ(ScheduleSentence(Every(interval, kind, pattern), kStart, TextTable::Ids()),
                BracketedText(key, all));
    }
  }
}

TEST(ScheduleSentence, SaysOddTimesAndWhyNothingRuns) {
  const std::vector<std::pair<std::optional<RecurrenceRecord>, std::string>> cases = {
      {At(DailyRecord{}, 23h + 59min + 5s), "[schedule.daily.day.at:23:59:05]"},
      {At(DailyRecord{}, 10h + 9min + 10s), "[schedule.daily.day.at:10:09:10]"},
      {At(DailyRecord{}, -1s - 24h), "[schedule.daily.day.at:23:59:59]"},
      {RecurrenceRecord{.execution_time = DateTime::min(), .pattern = DailyRecord{}},
       "[schedule.daily.day.at:08:29:52]"},
      {At(DailyRecord{1'000'000}), "[schedule.daily.days.at:1000000,08:00]"},
      {std::nullopt, "[schedule.none]"},
      {RecurrenceRecord{}, "[schedule.incomplete]"},
      {At(Weekly(2, "0000000")), "[schedule.neverWithoutDays]"},
      {At(DailyRecord{-1}), "[schedule.never]"},
      {At(MonthlyRecord{1, On(32)}), "[schedule.never]"},
      {At(MonthlyRecord{1, OnThe(5, 1)}), "[schedule.never]"},
      {At(YearlyRecord{13, On(1)}), "[schedule.never]"},
      {Every(1, 3, DailyRecord{}), "[schedule.never]"},
      // Ticks lie an even number of days after the start, the Tuesdays of every other week an odd one.
      {Every(48, time_kind::kEveryNHours, Weekly(2, "0010000")), "[schedule.never]"}};
  for (const auto& [record, key] : cases) {
    EXPECT_EQ(ScheduleSentence(record, kStart, TextTable::Ids()), key);
  }
  constexpr local_days kLast{9999y / 12 / 31};  // with a single run
  EXPECT_EQ(ScheduleSentence(At(DailyRecord{}, 0h), kLast, TextTable::Ids()),
            "[schedule.daily.day.at:00:00]");
}

// The pages' texts name the same days and months.
TEST(ScheduleSentence, NamesDaysAndMonthsAsThePagesDo) {
  struct Language {
    std::string code, week, month, year, at;  // what stands before the phrase, and after it
  };
  const std::vector<Language> languages = {
      {"en", "Every week on ", "Every month on the ", "Every year on ", ", at 08:00"},
      {"fr", "Toutes les semaines, le ", "Tous les mois, le ", "Tous les ans, le ", ", à 08:00"}};
  const auto joined = [](const std::vector<std::string>& parts) {
    return std::accumulate(parts.begin(), parts.end(), std::string());
  };
  for (const auto& [code, week, month, year, at] : languages) {
    const TextTable texts = LoadLanguage(code);
    const auto page_text = [&](int id) { return texts.Find(id).value_or("missing"); };
    for (int day = 1; day <= 10; ++day) {
      for (int n = 0; n <= 4; ++n) {
        EXPECT_EQ(ScheduleSentence(At(MonthlyRecord{1, OnThe(n, day)}), kStart, texts),
                  joined({month, page_text(39 + n), " ", page_text(43 + day), at}));
      }
      if (day > 7) continue;
      WeeklyRecord weekly;
      weekly.days.at(static_cast<std::size_t>(day - 1)) = true;
      EXPECT_EQ(ScheduleSentence(At(weekly), kStart, texts), joined({week, page_text(43 + day), at}));
    }
    for (int number = 1; number <= 12; ++number) {
      EXPECT_EQ(ScheduleSentence(At(YearlyRecord{number, On(15)}), kStart, texts),
                joined({year, "15 ", page_text(98 + number), at}));
      const auto relative = ScheduleSentence(At(YearlyRecord{number, OnThe(0, 1)}), kStart, texts);
      EXPECT_TRUE(relative.ends_with(page_text(98 + number) + at)) << relative;
    }
  }
}

TEST(ScheduleSentence, ReadsAsASentenceOfTheLanguage) {
  struct Case {
    RecurrenceRecord record;
    std::string en, fr;
  };
  const std::vector<Case> cases = {
      {At(Weekly(2, "0100010")), "Every 2 weeks on Monday and Friday, at 08:00",
       "Toutes les 2 semaines, le lundi et le vendredi, à 08:00"},
      {At(MonthlyRecord{1, On(1)}), "Every month on day 1, at 08:00", "Tous les mois, le 1er, à 08:00"},
      {At(YearlyRecord{4, OnThe(4, 10)}), "Every year on the last weekend day of April, at 08:00",
       "Tous les ans, le dernier jour de week-end d’avril, à 08:00"},
      {Every(5, time_kind::kEveryNMinutes, MonthlyRecord{2, On(31)}),
       "Every 2 months on day 31 or the last day of a shorter month, every 5 minutes",
       "Tous les 2 mois, le 31 ou le dernier jour d’un mois plus court, toutes les 5 minutes"}};
  for (const auto& [record, en, fr] : cases) {
    EXPECT_EQ(ScheduleSentence(record, kStart, LoadLanguage("en")), en);
    EXPECT_EQ(ScheduleSentence(record, kStart, LoadLanguage("fr")), fr);
  }
}

TEST(RunNote, SaysWhatWasMoved) {
  const DateTime day = kStart;
  struct Case {
    DateTime wanted, wall;
    std::optional<int> moved_from;
    std::optional<std::string> note;
  };
  const std::string moved_day = "[schedule.note.day:31]", moved_time = "[schedule.note.time:02:30,03:30]";
  const std::vector<Case> cases = {
      {day + 8h, day + 8h, {}, {}},
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
}  // namespace plovix
