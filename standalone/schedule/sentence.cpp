#include "sentence.h"

#include <vector>

#include "schedule.h"
#include "sentence_keys.h"

namespace plovix {
namespace {

namespace keys = sentence_keys;

// What a pattern says: its sentences, and what they take before the time.
struct PatternWords {
  const keys::PatternKeys& sentences;
  std::vector<std::string> parameters;
};

// What the engine makes of a number that is not yet set.
int Counted(std::int32_t number) {
  return number == 0 ? 1 : number;
}

// The text of one of a table's keys; `number` counts from 1.
template <std::size_t kSize>
std::string Numbered(const std::array<std::string_view, kSize>& table, int number, const TextTable& texts,
                     const std::vector<std::string>& parameters = {}) {
  return texts.Host(table.at(static_cast<std::size_t>(number - 1)), parameters);
}

std::string TwoDigits(std::int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

PatternWords Words(const DailyRecord& record, const TextTable&) {
  const int days = Counted(record.every_n_days);
  if (days == 1) return {record.weekdays_only ? keys::kWeekday : keys::kDay, {}};
  return {record.weekdays_only ? keys::kDaysOnWeekdays : keys::kDays, {std::to_string(days)}};
}

// The chosen days, in the order of a week.
std::vector<std::string> ChosenDays(const WeeklyRecord& record, const TextTable& texts) {
  std::vector<std::string> chosen;
  for (std::size_t i = 0; i < record.days.size(); ++i) {
    if (record.days.at(i)) chosen.push_back(texts.Host(keys::kDaysOfWeek.at(i)));
  }
  return chosen;
}

// Joins one or more days from the left.
std::string DayList(const std::vector<std::string>& days, const TextTable& texts) {
  if (days.size() == 2) return texts.Host("schedule.days.two", days);
  std::string list = days.at(0);
  for (std::size_t i = 1; i < days.size(); ++i) {
    const bool last = i + 1 == days.size();
    list = texts.Host(last ? "schedule.days.last" : "schedule.days.next", {list, days.at(i)});
  }
  return list;
}

PatternWords Words(const WeeklyRecord& record, const TextTable& texts) {
  const int weeks = Counted(record.every_n_weeks);
  const auto days = ChosenDays(record, texts);
  if (days.size() == record.days.size()) {
    if (weeks == 1) return {keys::kDay, {}};
    return {keys::kWeeksEveryDay, {std::to_string(weeks)}};
  }
  if (weeks == 1) return {keys::kWeek, {DayList(days, texts)}};
  return {keys::kWeeks, {std::to_string(weeks), DayList(days, texts)}};
}

// "the first Monday"
std::string RelativeDay(const DayChoice& choice, const TextTable& texts) {
  const auto week = static_cast<std::size_t>(choice.relative_week);
  return Numbered(keys::kRelativeDays.at(week), Counted(choice.relative_day_of_week), texts);
}

// A day's number; the first of a month has a word of its own in some languages.
std::string DayNumber(int day, const TextTable& texts) {
  return day == 1 ? texts.Host("schedule.dayOne") : std::to_string(day);
}

PatternWords Words(const MonthlyRecord& record, const TextTable& texts) {
  constexpr int kInEveryMonth = 28;
  const int months = Counted(record.every_n_months);
  if (record.day.use_relative_day) {
    const std::string day = RelativeDay(record.day, texts);
    if (months == 1) return {keys::kMonthRelative, {day}};
    return {keys::kMonthsRelative, {std::to_string(months), day}};
  }
  const int number = Counted(record.day.day_of_month);
  const std::string day = DayNumber(number, texts);
  if (months == 1) return {number > kInEveryMonth ? keys::kMonthOrLastDay : keys::kMonth, {day}};
  return {number > kInEveryMonth ? keys::kMonthsOrLastDay : keys::kMonths, {std::to_string(months), day}};
}

// The number of days that the month has in a leap year.
int LongestLength(int month) {
  using namespace std::chrono;
  const year_month_day_last end = year{2000} / std::chrono::month{static_cast<unsigned>(month)} / last;
  return static_cast<int>(static_cast<unsigned>(end.day()));
}

PatternWords Words(const YearlyRecord& record, const TextTable& texts) {
  const int month = Counted(record.month);
  const int day = Counted(record.day.day_of_month);
  const std::string of_month = Numbered(keys::kOfMonth, month, texts);
  if (record.day.use_relative_day) return {keys::kYearRelative, {RelativeDay(record.day, texts), of_month}};
  if (day > LongestLength(month)) {  // a day that no year has runs on the last one in every year
    const DayChoice last_day{.use_relative_day = true, .relative_week = 4, .relative_day_of_week = 8};
    return {keys::kYearRelative, {RelativeDay(last_day, texts), of_month}};
  }
  if (month == 2 && day == 29) return {keys::kLeapDay, {}};
  return {keys::kDate, {Numbered(keys::kDates, month, texts, {DayNumber(day, texts)})}};
}

// The words of a pattern that runs.
PatternWords Words(const PatternRecord& pattern, const TextTable& texts) {
  if (const auto* daily = std::get_if<DailyRecord>(&pattern)) return Words(*daily, texts);
  if (const auto* weekly = std::get_if<WeeklyRecord>(&pattern)) return Words(*weekly, texts);
  if (const auto* monthly = std::get_if<MonthlyRecord>(&pattern)) return Words(*monthly, texts);
  return Words(std::get<YearlyRecord>(pattern), texts);
}

// The pattern's sentence with the time in it.
std::string WithTime(PatternWords words, const RecurrenceRecord& recurrence, const TextTable& texts,
                     const TimeFormat& time) {
  if (recurrence.time_kind == time_kind::kAtTime) {
    words.parameters.push_back(time(recurrence.execution_time));
    return texts.Host(words.sentences.at, words.parameters);
  }
  const bool minutes = recurrence.time_kind == time_kind::kEveryNMinutes;
  const int interval = Counted(recurrence.interval);
  if (interval == 1)
    return texts.Host(minutes ? words.sentences.minute : words.sentences.hour, words.parameters);
  words.parameters.push_back(std::to_string(interval));
  return texts.Host(minutes ? words.sentences.minutes : words.sentences.hours, words.parameters);
}

// Says why there is no run at all.
std::string NeverSentence(const PatternRecord& pattern, const TextTable& texts) {
  const auto* weekly = std::get_if<WeeklyRecord>(&pattern);
  const bool without_days = weekly != nullptr && ChosenDays(*weekly, texts).empty();
  return texts.Host(without_days ? "schedule.neverWithoutDays" : "schedule.never");
}

// Why the run is not at the time of day that was wanted; nothing when it is.
std::optional<std::string> TimeNote(const Run& run, const TextTable& texts, const TimeFormat& time) {
  if (!run.moment.shifted) return std::nullopt;
  using std::chrono::days;
  const bool same_day = std::chrono::floor<days>(run.wanted) == std::chrono::floor<days>(run.moment.wall);
  return texts.Host(same_day ? "schedule.note.time" : "schedule.note.timeOfDayBefore",
                    {time(run.wanted), time(run.moment.wall)});
}

}  // namespace

// In plain seconds, because an extreme date overflows a count from its midnight.
std::string ClockTime(DateTime at) {
  constexpr std::int64_t kDay = 24 * 60 * 60;
  const std::int64_t second = (at.time_since_epoch().count() % kDay + kDay) % kDay;
  const std::string time = TwoDigits(second / 3600) + ":" + TwoDigits(second / 60 % 60);
  return second % 60 == 0 ? time : time + ":" + TwoDigits(second % 60);
}

std::string ScheduleSentence(const std::optional<RecurrenceRecord>& recurrence, std::chrono::local_days start,
                             const TextTable& texts, const TimeFormat& time) {
  if (!recurrence) return texts.Host("schedule.none");
  if (std::holds_alternative<std::monostate>(recurrence->pattern)) return texts.Host("schedule.incomplete");
  const Schedule schedule(*recurrence, start);
  if (!schedule.Next(DateTime{start} - std::chrono::seconds{1}))
    return NeverSentence(recurrence->pattern, texts);
  return WithTime(Words(recurrence->pattern, texts), *recurrence, texts, time);
}

std::optional<std::string> RunNote(const Run& run, const TextTable& texts, const TimeFormat& time) {
  auto time_note = TimeNote(run, texts, time);
  if (!run.moved_from) return time_note;
  const std::string day = texts.Host("schedule.note.day", {std::to_string(*run.moved_from)});
  return time_note ? texts.Host("schedule.note.both", {day, *time_note}) : day;
}

}  // namespace plovix
