#include "sentence.h"

#include <vector>

#include "sentence_keys.h"

namespace plovix {
namespace {

namespace keys = sentence_keys;

using std::chrono::days;
using std::chrono::floor;
using std::chrono::local_days;

// The sentences for a pattern, and their parameters before the time.
struct PatternWords {
  const keys::PatternKeys& sentences;
  std::vector<std::string> parameters;
};

// The number that the engine uses; 1 if it is not yet set.
int Counted(std::int32_t number) {
  return number == 0 ? 1 : number;
}

// The text for one of a table's keys; `number` starts at 1.
template <std::size_t kSize>
std::string Numbered(const std::array<std::string_view, kSize>& table, int number, const TextTable& texts,
                     const std::vector<std::string>& parameters = {}) {
  return texts.Host(table.at(static_cast<std::size_t>(number - 1)), parameters);
}

std::string TwoDigits(std::int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

PatternWords Words(const DailyRecord& record, const TextTable&) {
  const int step = Counted(record.every_n_days);
  if (step == 1) return {record.weekdays_only ? keys::kWeekday : keys::kDay, {}};
  // With whole weeks, every day is on the start's weekday, which is not on a weekend if there are runs.
  const bool meets_weekends = record.weekdays_only && step % 7 != 0;
  return {meets_weekends ? keys::kDaysOnWeekdays : keys::kDays, {std::to_string(step)}};
}

// The chosen days, in the order of the week.
std::vector<std::string> ChosenDays(const WeeklyRecord& record, const TextTable& texts) {
  std::vector<std::string> chosen;
  for (std::size_t i = 0; i < record.days.size(); ++i) {
    if (record.days.at(i)) chosen.push_back(texts.Host(keys::kDaysOfWeek.at(i)));
  }
  return chosen;
}

// Joins one or more days from the left.
std::string DayList(const std::vector<std::string>& chosen, const TextTable& texts) {
  if (chosen.size() == 2) return texts.Host("schedule.days.two", chosen);
  std::string list = chosen.at(0);
  for (std::size_t i = 1; i < chosen.size(); ++i) {
    const bool last = i + 1 == chosen.size();
    list = texts.Host(last ? "schedule.days.last" : "schedule.days.next", {list, chosen.at(i)});
  }
  return list;
}

PatternWords Words(const WeeklyRecord& record, const TextTable& texts) {
  const int weeks = Counted(record.every_n_weeks);
  const auto chosen = ChosenDays(record, texts);
  if (chosen.size() == record.days.size()) {
    if (weeks == 1) return {keys::kDay, {}};
    return {keys::kWeeksEveryDay, {std::to_string(weeks)}};
  }
  if (weeks == 1) return {keys::kWeek, {DayList(chosen, texts)}};
  // The day on which a week begins matters only if Sunday is one of several days.
  const bool from_sunday = record.days[0] && chosen.size() > 1;
  return {from_sunday ? keys::kWeeksFromSunday : keys::kWeeks,
          {std::to_string(weeks), DayList(chosen, texts)}};
}

// "the first Monday"
std::string RelativeDay(const DayChoice& choice, const TextTable& texts) {
  const auto week = static_cast<std::size_t>(choice.relative_week);
  return Numbered(keys::kRelativeDays.at(week), Counted(choice.relative_day_of_week), texts);
}

// A day's number; some languages have a special word for the first of a month.
std::string DayNumber(int day, const TextTable& texts) {
  return day == 1 ? texts.Host("schedule.dayOne") : std::to_string(day);
}

PatternWords Words(const MonthlyRecord& record, ShortMonth short_month, const TextTable& texts) {
  constexpr int kInEveryMonth = 28;
  const int months = Counted(record.every_n_months);
  if (record.day.use_relative_day) {
    const std::string day = RelativeDay(record.day, texts);
    if (months == 1) return {keys::kMonthRelative, {day}};
    return {keys::kMonthsRelative, {std::to_string(months), day}};
  }
  const int number = Counted(record.day.day_of_month);
  const std::string day = DayNumber(number, texts);
  const bool skips = short_month == ShortMonth::kSkip;
  if (months == 1) {
    if (number <= kInEveryMonth) return {keys::kMonth, {day}};
    return {skips ? keys::kMonthIfLong : keys::kMonthOrLastDay, {day}};
  }
  if (number <= kInEveryMonth) return {keys::kMonths, {std::to_string(months), day}};
  return {skips ? keys::kMonthsIfLong : keys::kMonthsOrLastDay, {std::to_string(months), day}};
}

// The number of days that the month has in a leap year.
int LongestLength(int month) {
  using namespace std::chrono;
  const year_month_day_last end = year{2000} / std::chrono::month{static_cast<unsigned>(month)} / last;
  return static_cast<int>(static_cast<unsigned>(end.day()));
}

PatternWords Words(const YearlyRecord& record, ShortMonth short_month, const TextTable& texts) {
  const int month = Counted(record.month);
  const int day = Counted(record.day.day_of_month);
  const std::string of_month = Numbered(keys::kOfMonth, month, texts);
  if (record.day.use_relative_day) return {keys::kYearRelative, {RelativeDay(record.day, texts), of_month}};
  if (day > LongestLength(month)) {  // if it runs, on the last day in every year
    const DayChoice last_day{.use_relative_day = true, .relative_week = 4, .relative_day_of_week = 8};
    return {keys::kYearRelative, {RelativeDay(last_day, texts), of_month}};
  }
  if (month == 2 && day == 29)
    return {short_month == ShortMonth::kSkip ? keys::kLeapDayOnly : keys::kLeapDay, {}};
  return {keys::kDate, {Numbered(keys::kDates, month, texts, {DayNumber(day, texts)})}};
}

// The words for a pattern that runs.
PatternWords Words(const PatternRecord& pattern, ShortMonth short_month, const TextTable& texts) {
  if (const auto* daily = std::get_if<DailyRecord>(&pattern)) return Words(*daily, texts);
  if (const auto* weekly = std::get_if<WeeklyRecord>(&pattern)) return Words(*weekly, texts);
  if (const auto* monthly = std::get_if<MonthlyRecord>(&pattern)) return Words(*monthly, short_month, texts);
  return Words(std::get<YearlyRecord>(pattern), short_month, texts);
}

// "5 January 2026"
std::string Date(local_days day, const TextTable& texts) {
  const std::chrono::year_month_day date{day};
  const auto month = static_cast<int>(static_cast<unsigned>(date.month()));
  const auto number = static_cast<int>(static_cast<unsigned>(date.day()));
  return texts.Host("schedule.dateInYear", {Numbered(keys::kDates, month, texts, {DayNumber(number, texts)}),
                                            std::to_string(static_cast<int>(date.year()))});
}

constexpr DateTime kMidnight{};

// Whether the interval does not divide a day: then it continues across days, and its times differ from day to
// day.
bool GoesOn(const RecurrenceRecord& recurrence) {
  if (recurrence.time_kind == time_kind::kAtTime) return false;
  const int in_a_day = recurrence.time_kind == time_kind::kEveryNMinutes ? 24 * 60 : 24;
  return in_a_day % Counted(recurrence.interval) != 0;
}

// Adds the parameters for the time; returns the key of the sentence.
std::string_view AddTime(PatternWords& words, const RecurrenceRecord& recurrence, local_days start,
                         const TextTable& texts, const TimeFormat& time) {
  const auto add = [&](const std::string& parameter) { words.parameters.push_back(parameter); };
  const bool minutes = recurrence.time_kind == time_kind::kEveryNMinutes;
  const int interval = Counted(recurrence.interval);
  const bool at_time = recurrence.time_kind == time_kind::kAtTime;
  if (at_time || interval == (minutes ? 24 * 60 : 24)) {
    add(time(at_time ? recurrence.execution_time : kMidnight));
    return words.sentences.at;
  }
  if (interval == 1) return minutes ? words.sentences.minute : words.sentences.hour;
  add(std::to_string(interval));
  if (!GoesOn(recurrence)) return minutes ? words.sentences.minutes : words.sentences.hours;
  add(Date(start, texts));
  add(time(kMidnight));
  return minutes ? words.sentences.minutes_from : words.sentences.hours_from;
}

// Adds the time of the first or next run if it is not soon.
void AddNote(ScheduleWords& words, const Outlook& outlook, const TextTable& texts) {
  constexpr days kFarAhead{366};
  if (outlook.runs.empty()) {
    words.note = texts.Host("schedule.over");
    return;
  }
  const Run& next = outlook.runs.front();
  const auto day = floor<days>(next.moment.wall);
  if (outlook.start > floor<days>(outlook.now)) {
    words.name_start = true;
    const std::string start = Date(outlook.start, texts);
    words.note = day == outlook.start ? texts.Host("schedule.starts", {start})
                                      : texts.Host("schedule.startsLater", {start, Date(day, texts)});
  } else if (next.moment.wall > outlook.now + kFarAhead) {
    words.note = texts.Host(outlook.ran ? "schedule.next" : "schedule.first", {Date(day, texts)});
  }
}

std::string Warning(const Schedule::Gap& gap, const TextTable& texts) {
  const std::string from = Date(floor<days>(gap.from), texts);
  if (!gap.to) return texts.Host("schedule.longGapToTheEnd", {from});
  return texts.Host("schedule.longGap", {from, Date(floor<days>(*gap.to), texts)});
}

// Says why there is no run at all.
std::string NeverSentence(const PatternRecord& pattern, const TextTable& texts) {
  const auto* weekly = std::get_if<WeeklyRecord>(&pattern);
  const bool without_days = weekly != nullptr && ChosenDays(*weekly, texts).empty();
  return texts.Host(without_days ? "schedule.neverWithoutDays" : "schedule.never");
}

// Why the run is not at the wanted time of day; nothing if it is.
std::optional<std::string> TimeNote(const Run& run, const TextTable& texts, const TimeFormat& time) {
  if (!run.moment.shifted) return std::nullopt;
  const bool same_day = floor<days>(run.wanted) == floor<days>(run.moment.wall);
  return texts.Host(same_day ? "schedule.note.time" : "schedule.note.timeOfDayBefore",
                    {time(run.wanted), time(run.moment.wall)});
}

}  // namespace

// In plain seconds, because counting from midnight overflows for extreme dates.
std::string ClockTime(DateTime at) {
  constexpr std::int64_t kDay = 24 * 60 * 60;
  const std::int64_t second = (at.time_since_epoch().count() % kDay + kDay) % kDay;
  const std::string time = TwoDigits(second / 3600) + ":" + TwoDigits(second / 60 % 60);
  return second % 60 == 0 ? time : time + ":" + TwoDigits(second % 60);
}

ScheduleWords InWords(const std::optional<RecurrenceRecord>& recurrence, const Outlook& outlook,
                      const TextTable& texts, const TimeFormat& time) {
  ScheduleWords words;
  if (!recurrence) {
    words.sentence = texts.Host("schedule.none");
  } else if (std::holds_alternative<std::monostate>(recurrence->pattern)) {
    words.sentence = texts.Host("schedule.incomplete");
  } else if (outlook.runs.empty() && !outlook.ran) {
    words.sentence = NeverSentence(recurrence->pattern, texts);
  } else {
    PatternWords pattern = Words(recurrence->pattern, outlook.short_month, texts);
    const std::string_view key = AddTime(pattern, *recurrence, outlook.start, texts, time);
    words.sentence = texts.Host(key, pattern.parameters);
    words.name_start = GoesOn(*recurrence);
    AddNote(words, outlook, texts);
    if (outlook.gap) words.warning = Warning(*outlook.gap, texts);
  }
  return words;
}

std::string OneLine(const ScheduleWords& words, const TextTable& texts) {
  std::string line = words.sentence;
  if (words.warning) line = texts.Host("schedule.both", {*words.warning, line});
  return words.note ? texts.Host("schedule.both", {line, *words.note}) : line;
}

std::optional<std::string> RunNote(const Run& run, const TextTable& texts, const TimeFormat& time) {
  auto time_note = TimeNote(run, texts, time);
  if (!run.moved_from) return time_note;
  const std::string day = texts.Host("schedule.note.day", {std::to_string(*run.moved_from)});
  return time_note ? texts.Host("schedule.both", {day, *time_note}) : day;
}

}  // namespace plovix
