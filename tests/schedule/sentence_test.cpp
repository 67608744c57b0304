// Which text, with which parameters, a schedule and a run's note are; how some of them read; and that what
// they say is what the engine runs.
#include <plovix/standalone/schedule/sentence.h>
#include <plovix/standalone/schedule/sentence_keys.h>
#include <plovix/standalone/text/languages.h>

#include <algorithm>

#include "schedule_support.h"

namespace plovix::schedule_tests {
namespace {

using namespace std::chrono_literals;
using std::chrono::local_days;

constexpr local_days kStart{2026y / 1 / 5};
constexpr ShortMonth kSkipMonth = ShortMonth::kSkip;

// Weeks and a week's days as 0 and 1, Sunday first.
WeeklyRecord Weekly(int weeks, const std::string& days) {
  WeeklyRecord record{.every_n_weeks = weeks};
  for (std::size_t i = 0; i < days.size(); ++i) record.days.at(i) = days[i] == '1';
  return record;
}

Outlook UtcOutlook(const RecurrenceRecord& record, local_days start, DateTime now,
                   ShortMonth short_month = ShortMonth::kLast) {
  return OutlookOf(record, start, short_month, *Zone::Named("UTC"),
                   std::chrono::sys_seconds{now.time_since_epoch()});
}

// From the start on.
std::string Sentence(const std::optional<RecurrenceRecord>& record, const TextTable& texts,
                     local_days start = kStart) {
  return OneLine(InWords(record, UtcOutlook(record.value_or(RecurrenceRecord{}), start, start), texts),
                 texts);
}

std::string DateId(local_days day) {
  const std::chrono::year_month_day date{day};
  const unsigned number{date.day()};
  const std::string day_id = number == 1 ? "[schedule.dayOne]" : std::to_string(number);
  return BracketedText("schedule.dateInYear",
                       {BracketedText(sentence_keys::kDates.at(unsigned{date.month()} - 1), {day_id}),
                        std::to_string(int{date.year()})});
}

TEST(ScheduleSentence, SaysThePatternWithEveryTime) {
  const std::string monday = "[schedule.weekday.monday]", friday = "[schedule.weekday.friday]",
                    sunday = "[schedule.weekday.sunday]", first = "[schedule.relative.first.monday]",
                    last = "[schedule.relative.last.day]", one = "[schedule.dayOne]";
  const struct {
    PatternRecord pattern;
    std::string key;
    std::vector<std::string> parameters;
    ShortMonth short_month = ShortMonth::kLast;
  } cases[] = {
      {DailyRecord{}, "daily.day", {}},
      {DailyRecord{1'000'000}, "daily.days", {"1000000"}},
      {DailyRecord{1, true}, "daily.weekday", {}},
      {DailyRecord{3, true}, "daily.daysOnWeekdays", {"3"}},
      {DailyRecord{14, true}, "daily.days", {"14"}},  // from a Monday on
      {Weekly(0, "0100000"), "weekly.week", {monday}},
      {Weekly(2, "0100010"), "weekly.weeks", {"2", BracketedText("schedule.days.two", {monday, friday})}},
      {Weekly(2, "1000001"),
       "weekly.weeksFromSunday",
       {"2", BracketedText("schedule.days.two", {sunday, "[schedule.weekday.saturday]"})}},
      {Weekly(2, "1000000"), "weekly.weeks", {"2", sunday}},
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
      {MonthlyRecord{1, OnDay(28)}, "monthly.month", {"28"}, kSkipMonth},
      {MonthlyRecord{1, OnDay(29)}, "monthly.monthIfLong", {"29"}, kSkipMonth},
      {MonthlyRecord{6, OnDay(28)}, "monthly.months", {"6", "28"}, kSkipMonth},
      {MonthlyRecord{6, OnDay(29)}, "monthly.monthsIfLong", {"6", "29"}, kSkipMonth},
      {MonthlyRecord{1, OnThe(0, 2)}, "monthly.monthRelative", {first}},
      {MonthlyRecord{2, OnThe(0, 0)}, "monthly.monthsRelative", {"2", "[schedule.relative.first.sunday]"}},
      {YearlyRecord{0, OnDay(0)}, "yearly.date", {BracketedText("schedule.date.january", {one})}},
      {YearlyRecord{12, OnDay(31)}, "yearly.date", {"[schedule.date.december:31]"}},
      {YearlyRecord{2, OnDay(29)}, "yearly.leapDay", {}},
      {YearlyRecord{2, OnDay(29)}, "yearly.leapDayOnly", {}, kSkipMonth},
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
               {time_kind::kEveryNMinutes, 1440, ".at", {"00:00"}},
               {time_kind::kEveryNMinutes, 7, ".minutesFrom", {"7", DateId(kStart), "00:00"}},
               {time_kind::kEveryNHours, 1, ".hour", {}},
               {time_kind::kEveryNHours, 12, ".hours", {"12"}},
               {time_kind::kEveryNHours, 13, ".hoursFrom", {"13", DateId(kStart), "00:00"}},
               {time_kind::kEveryNHours, 24, ".at", {"00:00"}}};
  for (const auto& [pattern, pattern_key, parameters, short_month] : cases) {
    for (const auto& [kind, interval, time_key, parameter] : times) {
      auto all = parameters;
      all.insert(all.end(), parameter.begin(), parameter.end());
      RecurrenceRecord record = AtTime(pattern);
      record.time_kind = kind;
      record.interval = interval;
      const Outlook outlook = UtcOutlook(record, kStart, kStart, short_month);
      EXPECT_EQ(InWords(record, outlook, TextTable::Ids()).sentence,
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
  for (const auto& [record, key] : cases) EXPECT_EQ(Sentence(record, TextTable::Ids()), key);
  constexpr local_days kLast{9999y / 12 / 31};  // with a single run, which is over
  EXPECT_EQ(Sentence(AtTime(DailyRecord{}, "00:00"), TextTable::Ids(), kLast),
            "[schedule.both:[schedule.daily.day.at:00:00],[schedule.over]]");
}

// How often the times tick on a selected day, as the sentence says it.
void CheckTimes(const std::string& sentence, const RecurrenceRecord& record, const Schedule& schedule,
                local_days start, DateTime run) {
  const auto step = std::chrono::minutes{record.interval} * (record.time_kind == 1 ? 1 : 60);
  const DateTime midnight = std::chrono::floor<std::chrono::days>(run);
  const auto says = [&](const char* key) { return sentence.find(key) != std::string::npos; };
  for (DateTime at = midnight; at < midnight + 24h; at += 1min) {
    bool said = (at - start) % step == 0s;
    if (says(".at:")) said = sentence.ends_with(ClockTime(at) + "]");
    if (says(".minutes:") || says(".hours:")) said = (at - midnight) % step == 0s;
    ASSERT_EQ(schedule.IsRun(at), said) << sentence << " " << Text(at);
  }
}

// A gap of more than a year that the days alone, and the ticks alone, would not have.
bool IsLong(DateTime from, std::optional<DateTime> to, const Schedule& midnights, const Schedule& ticks) {
  const DateTime end = to.value_or(from + 400 * 366 * 24h);
  const DateTime next_day = std::chrono::floor<std::chrono::days>(from) + 23h + 59min;
  return end - from > 366 * 24h && ticks.Next(from) < end &&
         midnights.Next(next_day) < std::chrono::floor<std::chrono::days>(end);
}

TEST(ScheduleSentence, SaysWhatTheEngineRuns) {
  std::mt19937 random(7);
  const TextTable ids = TextTable::Ids();
  constexpr std::int32_t kIntervals[] = {1,   5,   7,    12,   24,   36,     48,    90,
                                         168, 719, 1000, 1440, 2881, 60'000, 70'561};
  int warnings = 0, nevers = 0;
  for (int number = 0; number < 700; ++number) {
    const auto kind = static_cast<std::int32_t>(1 + random() % 2);
    const RecurrenceRecord record =
        Every(kIntervals[random() % std::size(kIntervals)], kind, AnyPattern(random));
    const local_days start = Day("1500-01-01") + std::chrono::days{random() % 220'000};
    const DateTime now = Day(random() % 4 == 0 ? "1500-01-01" : "2026-02-27") + 10h;
    const ShortMonth short_month = random() % 2 == 0 ? kSkipMonth : ShortMonth::kLast;
    const Schedule schedule(record, start, short_month),
        midnights(AtTime(record.pattern, "00:00"), start, short_month),
        ticks(Every(record.interval, kind, DailyRecord{1}), start);
    const Outlook outlook = UtcOutlook(record, start, now, short_month);
    const ScheduleWords words = InWords(record, outlook, ids);
    const std::string trace = words.sentence + " at " + Text(now);
    const auto next = schedule.Next(now), previous = schedule.Previous(now + 1s);
    ASSERT_EQ(words.sentence == "[schedule.never]", !next && !previous) << trace;
    ASSERT_EQ(outlook.runs.empty(), !next) << trace;
    if (!next && !previous) {
      EXPECT_FALSE(words.note || words.warning) << trace;
      ++nevers;
      continue;
    }
    CheckTimes(words.sentence, record, schedule, start, next ? *next : *previous);
    const auto day = [](DateTime time) { return std::chrono::floor<std::chrono::days>(time); };
    EXPECT_EQ(words.note.has_value(), !next || start > day(now) || *next - now > 366 * 24h) << trace;
    if (words.note && next) {
      EXPECT_NE(words.note->find(DateId(day(*next))), std::string::npos) << trace;
    }
    std::optional<std::string> warning;
    std::optional<DateTime> to = next;
    DateTime from = previous.value_or(start);
    // Ticks of a day and less come on every day; the runs of the others in ten years are fewer.
    for (int runs = 0; runs < 3700 && !warning; ++runs, from = *to, to = schedule.Next(from)) {
      if (IsLong(from, to, midnights, ticks))
        warning = to ? BracketedText("schedule.longGap", {DateId(day(from)), DateId(day(*to))})
                     : BracketedText("schedule.longGapToTheEnd", {DateId(day(from))});
      if (!to || *to > std::max<DateTime>(now, previous.value_or(start)) + 3660 * 24h) break;
    }
    EXPECT_EQ(words.warning, warning) << trace;
    warnings += words.warning.has_value();
  }
  EXPECT_TRUE(warnings > 30 && nevers > 30) << warnings << " " << nevers;
}

constexpr const char* kNoBreak = "\u00a0";

// Whole lines as people read them, on 27 February 2026 with a start in January or as said.
TEST(ScheduleSentence, ReadsWell) {
  const auto hours = [](int n, const PatternRecord& pattern) { return Every(n, 2, pattern); };
  const struct {
    RecurrenceRecord record;
    std::string en, fr;  // ~ for a no-break space
    local_days start = kStart;
    ShortMonth short_month = ShortMonth::kLast;
  } cases[] = {
      {hours(36, Weekly(1, "0100000")),
       "Every 36 hours, counted from 5 January 2026 at 00:00, but only on Monday",
       "Toutes les 36~heures, comptées à partir du 5~janvier 2026 à 00:00, mais seulement le lundi"},
      {hours(1000, YearlyRecord{1, OnDay(1)}),
       "More than a year without a run: none between 19 January 2026 and 1 January 2037. Every 1000 hours, "
       "counted from 19 January 2026 at 00:00, but only on 1 January. First run on 1 January 2037",
       "Plus d’un an sans exécution~: aucune entre le 19~janvier 2026 et le 1er~janvier 2037. Toutes les "
       "1000~heures, comptées à partir du 19~janvier 2026 à 00:00, mais seulement le 1er~janvier. Première "
       "exécution le 1er~janvier 2037",
       local_days{2026y / 1 / 19}},
      {AtTime(YearlyRecord{1, OnDay(1)}),
       "Every year on 1 January, at 08:00. Starts on 6 March 2027, with the first run on 1 January 2028",
       "Tous les ans, le 1er~janvier, à 08:00. Commence le 6~mars 2027, première exécution le 1er~janvier "
       "2028",
       local_days{2027y / 3 / 6}},
      {hours(36, MonthlyRecord{2, OnDay(31)}),
       "Every 36 hours, counted from 5 January 2026 at 00:00, but only one month in 2, on day 31 if the month "
       "has one",
       "Toutes les 36~heures, comptées à partir du 5~janvier 2026 à 00:00, mais seulement un mois sur 2, le "
       "31 s’il existe",
       kStart, kSkipMonth}};
  for (const char* code : {"en", "fr"}) {
    const TextTable texts = LoadLanguage(code);
    for (const auto& c : cases) {
      const Outlook outlook = UtcOutlook(c.record, c.start, Time("2026-02-27"), c.short_month);
      std::string line = OneLine(InWords(c.record, outlook, texts), texts);
      for (auto at = line.find(kNoBreak); at != std::string::npos; at = line.find(kNoBreak))
        line.replace(at, std::string_view(kNoBreak).size(), "~");
      EXPECT_EQ(line, texts.code == "en" ? c.en : c.fr);
    }
  }
}

// The pages' texts name the same days and months.
TEST(ScheduleSentence, NamesDaysAndMonthsAsThePagesDo) {
  using namespace sentence_keys;
  for (const char* code : {"en", "fr"}) {
    const TextTable texts = LoadLanguage(code);
    const auto names = [&](std::string_view key, int id) {
      const std::string wanted = texts.Find(id).value_or("missing"), text = texts.Host(key, {"15"});
      EXPECT_NE(text.find(wanted), std::string::npos) << text << " for " << wanted;
    };
    for (int day = 0; day < 10; ++day) {
      const auto at = static_cast<std::size_t>(day);
      if (day < 7) names(kDaysOfWeek.at(at), 44 + day);
      for (std::size_t week = 0; week < kRelativeDays.size(); ++week) {
        names(kRelativeDays.at(week).at(at), 44 + day);
        names(kRelativeDays.at(week).at(at), 39 + static_cast<int>(week));
      }
    }
    for (std::size_t month = 0; month < kDates.size(); ++month) {
      names(kDates.at(month), 99 + static_cast<int>(month));
      names(kOfMonth.at(month), 99 + static_cast<int>(month));
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
               {day + 150min, day + 210min, 31, "[schedule.both:" + moved_day + "," + moved_time + "]"},
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
