// The keys of the texts that sentence.cpp chooses among, each in full, so that a search for a key of the
// language tables finds its use.
#pragma once

#include <array>
#include <string_view>

namespace plovix::sentence_keys {

// One case of a pattern with each way to say the time. Their parameters: the pattern's as the row's comment
// says, then the time of day, or the number of minutes or hours.
struct PatternKeys {
  std::string_view at;
  std::string_view minute, minutes;  // every minute, every N minutes
  std::string_view hour, hours;
};

// Every day; no parameters.
inline constexpr PatternKeys kDay = {"schedule.daily.day.at", "schedule.daily.day.minute",
                                     "schedule.daily.day.minutes", "schedule.daily.day.hour",
                                     "schedule.daily.day.hours"};
// Number of days.
inline constexpr PatternKeys kDays = {"schedule.daily.days.at", "schedule.daily.days.minute",
                                      "schedule.daily.days.minutes", "schedule.daily.days.hour",
                                      "schedule.daily.days.hours"};
// Every day from Monday to Friday; no parameters.
inline constexpr PatternKeys kWeekday = {"schedule.daily.weekday.at", "schedule.daily.weekday.minute",
                                         "schedule.daily.weekday.minutes", "schedule.daily.weekday.hour",
                                         "schedule.daily.weekday.hours"};
// Number of days.
inline constexpr PatternKeys kDaysOnWeekdays = {
    "schedule.daily.daysOnWeekdays.at", "schedule.daily.daysOnWeekdays.minute",
    "schedule.daily.daysOnWeekdays.minutes", "schedule.daily.daysOnWeekdays.hour",
    "schedule.daily.daysOnWeekdays.hours"};
// Days of the week.
inline constexpr PatternKeys kWeek = {"schedule.weekly.week.at", "schedule.weekly.week.minute",
                                      "schedule.weekly.week.minutes", "schedule.weekly.week.hour",
                                      "schedule.weekly.week.hours"};
// Number of weeks, days of the week.
inline constexpr PatternKeys kWeeks = {"schedule.weekly.weeks.at", "schedule.weekly.weeks.minute",
                                       "schedule.weekly.weeks.minutes", "schedule.weekly.weeks.hour",
                                       "schedule.weekly.weeks.hours"};
// All seven days; number of weeks.
inline constexpr PatternKeys kWeeksEveryDay = {
    "schedule.weekly.weeksEveryDay.at", "schedule.weekly.weeksEveryDay.minute",
    "schedule.weekly.weeksEveryDay.minutes", "schedule.weekly.weeksEveryDay.hour",
    "schedule.weekly.weeksEveryDay.hours"};
// A day that every month has.
inline constexpr PatternKeys kMonth = {"schedule.monthly.month.at", "schedule.monthly.month.minute",
                                       "schedule.monthly.month.minutes", "schedule.monthly.month.hour",
                                       "schedule.monthly.month.hours"};
// 29 to 31.
inline constexpr PatternKeys kMonthOrLastDay = {
    "schedule.monthly.monthOrLastDay.at", "schedule.monthly.monthOrLastDay.minute",
    "schedule.monthly.monthOrLastDay.minutes", "schedule.monthly.monthOrLastDay.hour",
    "schedule.monthly.monthOrLastDay.hours"};
// Relative day.
inline constexpr PatternKeys kMonthRelative = {
    "schedule.monthly.monthRelative.at", "schedule.monthly.monthRelative.minute",
    "schedule.monthly.monthRelative.minutes", "schedule.monthly.monthRelative.hour",
    "schedule.monthly.monthRelative.hours"};
// Number of months, day.
inline constexpr PatternKeys kMonths = {"schedule.monthly.months.at", "schedule.monthly.months.minute",
                                        "schedule.monthly.months.minutes", "schedule.monthly.months.hour",
                                        "schedule.monthly.months.hours"};
// Number of months, 29 to 31.
inline constexpr PatternKeys kMonthsOrLastDay = {
    "schedule.monthly.monthsOrLastDay.at", "schedule.monthly.monthsOrLastDay.minute",
    "schedule.monthly.monthsOrLastDay.minutes", "schedule.monthly.monthsOrLastDay.hour",
    "schedule.monthly.monthsOrLastDay.hours"};
// Number of months, relative day.
inline constexpr PatternKeys kMonthsRelative = {
    "schedule.monthly.monthsRelative.at", "schedule.monthly.monthsRelative.minute",
    "schedule.monthly.monthsRelative.minutes", "schedule.monthly.monthsRelative.hour",
    "schedule.monthly.monthsRelative.hours"};
// Date.
inline constexpr PatternKeys kDate = {"schedule.yearly.date.at", "schedule.yearly.date.minute",
                                      "schedule.yearly.date.minutes", "schedule.yearly.date.hour",
                                      "schedule.yearly.date.hours"};
// 29 February; no parameters.
inline constexpr PatternKeys kLeapDay = {"schedule.yearly.leapDay.at", "schedule.yearly.leapDay.minute",
                                         "schedule.yearly.leapDay.minutes", "schedule.yearly.leapDay.hour",
                                         "schedule.yearly.leapDay.hours"};
// Relative day, "of" month.
inline constexpr PatternKeys kYearRelative = {
    "schedule.yearly.relative.at", "schedule.yearly.relative.minute", "schedule.yearly.relative.minutes",
    "schedule.yearly.relative.hour", "schedule.yearly.relative.hours"};

// Sunday first.
inline constexpr std::array<std::string_view, 7> kDaysOfWeek = {
    "schedule.weekday.sunday",    "schedule.weekday.monday",   "schedule.weekday.tuesday",
    "schedule.weekday.wednesday", "schedule.weekday.thursday", "schedule.weekday.friday",
    "schedule.weekday.saturday"};

// By DayChoice::relative_week, then by relative_day_of_week from 1.
inline constexpr std::array<std::array<std::string_view, 10>, 5> kRelativeDays = {{
    {"schedule.relative.first.sunday", "schedule.relative.first.monday", "schedule.relative.first.tuesday",
     "schedule.relative.first.wednesday", "schedule.relative.first.thursday",
     "schedule.relative.first.friday", "schedule.relative.first.saturday", "schedule.relative.first.day",
     "schedule.relative.first.weekday", "schedule.relative.first.weekendDay"},
    {"schedule.relative.second.sunday", "schedule.relative.second.monday", "schedule.relative.second.tuesday",
     "schedule.relative.second.wednesday", "schedule.relative.second.thursday",
     "schedule.relative.second.friday", "schedule.relative.second.saturday", "schedule.relative.second.day",
     "schedule.relative.second.weekday", "schedule.relative.second.weekendDay"},
    {"schedule.relative.third.sunday", "schedule.relative.third.monday", "schedule.relative.third.tuesday",
     "schedule.relative.third.wednesday", "schedule.relative.third.thursday",
     "schedule.relative.third.friday", "schedule.relative.third.saturday", "schedule.relative.third.day",
     "schedule.relative.third.weekday", "schedule.relative.third.weekendDay"},
    {"schedule.relative.fourth.sunday", "schedule.relative.fourth.monday", "schedule.relative.fourth.tuesday",
     "schedule.relative.fourth.wednesday", "schedule.relative.fourth.thursday",
     "schedule.relative.fourth.friday", "schedule.relative.fourth.saturday", "schedule.relative.fourth.day",
     "schedule.relative.fourth.weekday", "schedule.relative.fourth.weekendDay"},
    {"schedule.relative.last.sunday", "schedule.relative.last.monday", "schedule.relative.last.tuesday",
     "schedule.relative.last.wednesday", "schedule.relative.last.thursday", "schedule.relative.last.friday",
     "schedule.relative.last.saturday", "schedule.relative.last.day", "schedule.relative.last.weekday",
     "schedule.relative.last.weekendDay"},
}};

// January first; the parameter is the day.
inline constexpr std::array<std::string_view, 12> kDates = {
    "schedule.date.january",   "schedule.date.february", "schedule.date.march",    "schedule.date.april",
    "schedule.date.may",       "schedule.date.june",     "schedule.date.july",     "schedule.date.august",
    "schedule.date.september", "schedule.date.october",  "schedule.date.november", "schedule.date.december"};
inline constexpr std::array<std::string_view, 12> kOfMonth = {
    "schedule.ofMonth.january", "schedule.ofMonth.february", "schedule.ofMonth.march",
    "schedule.ofMonth.april",   "schedule.ofMonth.may",      "schedule.ofMonth.june",
    "schedule.ofMonth.july",    "schedule.ofMonth.august",   "schedule.ofMonth.september",
    "schedule.ofMonth.october", "schedule.ofMonth.november", "schedule.ofMonth.december"};

}  // namespace plovix::sentence_keys
