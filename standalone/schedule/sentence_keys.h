// The keys of the texts among which sentence.cpp chooses, each in full, so that a search for a key of the
// language tables finds its use.
#pragma once

#include <array>
#include <string_view>

namespace plovix::sentence_keys {

// One case of a pattern with each kind of time. The parameters are those of the pattern, listed in each row's
// comment, then the time of day, or the number of minutes or hours; for an interval that is counted from the
// start, also the day and the time of day of the start.
struct PatternKeys {
  std::string_view at;
  std::string_view minute, minutes, minutes_from;  // every minute, every N minutes
  std::string_view hour, hours, hours_from;
};

// Every day; no parameters.
inline constexpr PatternKeys kDay = {"schedule.daily.day.at",       "schedule.daily.day.minute",
                                     "schedule.daily.day.minutes",  "schedule.daily.day.minutesFrom",
                                     "schedule.daily.day.hour",     "schedule.daily.day.hours",
                                     "schedule.daily.day.hoursFrom"};
// Number of days.
inline constexpr PatternKeys kDays = {"schedule.daily.days.at",       "schedule.daily.days.minute",
                                      "schedule.daily.days.minutes",  "schedule.daily.days.minutesFrom",
                                      "schedule.daily.days.hour",     "schedule.daily.days.hours",
                                      "schedule.daily.days.hoursFrom"};
// Every day from Monday to Friday; no parameters.
inline constexpr PatternKeys kWeekday = {
    "schedule.daily.weekday.at",          "schedule.daily.weekday.minute", "schedule.daily.weekday.minutes",
    "schedule.daily.weekday.minutesFrom", "schedule.daily.weekday.hour",   "schedule.daily.weekday.hours",
    "schedule.daily.weekday.hoursFrom"};
// Number of days.
inline constexpr PatternKeys kDaysOnWeekdays = {
    "schedule.daily.daysOnWeekdays.at",       "schedule.daily.daysOnWeekdays.minute",
    "schedule.daily.daysOnWeekdays.minutes",  "schedule.daily.daysOnWeekdays.minutesFrom",
    "schedule.daily.daysOnWeekdays.hour",     "schedule.daily.daysOnWeekdays.hours",
    "schedule.daily.daysOnWeekdays.hoursFrom"};
// Days of the week.
inline constexpr PatternKeys kWeek = {"schedule.weekly.week.at",       "schedule.weekly.week.minute",
                                      "schedule.weekly.week.minutes",  "schedule.weekly.week.minutesFrom",
                                      "schedule.weekly.week.hour",     "schedule.weekly.week.hours",
                                      "schedule.weekly.week.hoursFrom"};
// Number of weeks, days of the week.
inline constexpr PatternKeys kWeeks = {"schedule.weekly.weeks.at",       "schedule.weekly.weeks.minute",
                                       "schedule.weekly.weeks.minutes",  "schedule.weekly.weeks.minutesFrom",
                                       "schedule.weekly.weeks.hour",     "schedule.weekly.weeks.hours",
                                       "schedule.weekly.weeks.hoursFrom"};
// Number of weeks that begin on Sunday, days of the week.
inline constexpr PatternKeys kWeeksFromSunday = {
    "schedule.weekly.weeksFromSunday.at",       "schedule.weekly.weeksFromSunday.minute",
    "schedule.weekly.weeksFromSunday.minutes",  "schedule.weekly.weeksFromSunday.minutesFrom",
    "schedule.weekly.weeksFromSunday.hour",     "schedule.weekly.weeksFromSunday.hours",
    "schedule.weekly.weeksFromSunday.hoursFrom"};
// All seven days; number of weeks.
inline constexpr PatternKeys kWeeksEveryDay = {
    "schedule.weekly.weeksEveryDay.at",       "schedule.weekly.weeksEveryDay.minute",
    "schedule.weekly.weeksEveryDay.minutes",  "schedule.weekly.weeksEveryDay.minutesFrom",
    "schedule.weekly.weeksEveryDay.hour",     "schedule.weekly.weeksEveryDay.hours",
    "schedule.weekly.weeksEveryDay.hoursFrom"};
// A day that every month has.
inline constexpr PatternKeys kMonth = {
    "schedule.monthly.month.at",          "schedule.monthly.month.minute", "schedule.monthly.month.minutes",
    "schedule.monthly.month.minutesFrom", "schedule.monthly.month.hour",   "schedule.monthly.month.hours",
    "schedule.monthly.month.hoursFrom"};
// 29 to 31; in other months on the last day.
inline constexpr PatternKeys kMonthOrLastDay = {
    "schedule.monthly.monthOrLastDay.at",       "schedule.monthly.monthOrLastDay.minute",
    "schedule.monthly.monthOrLastDay.minutes",  "schedule.monthly.monthOrLastDay.minutesFrom",
    "schedule.monthly.monthOrLastDay.hour",     "schedule.monthly.monthOrLastDay.hours",
    "schedule.monthly.monthOrLastDay.hoursFrom"};
// 29 to 31; not in other months.
inline constexpr PatternKeys kMonthIfLong = {
    "schedule.monthly.monthIfLong.at",       "schedule.monthly.monthIfLong.minute",
    "schedule.monthly.monthIfLong.minutes",  "schedule.monthly.monthIfLong.minutesFrom",
    "schedule.monthly.monthIfLong.hour",     "schedule.monthly.monthIfLong.hours",
    "schedule.monthly.monthIfLong.hoursFrom"};
// Relative day.
inline constexpr PatternKeys kMonthRelative = {
    "schedule.monthly.monthRelative.at",       "schedule.monthly.monthRelative.minute",
    "schedule.monthly.monthRelative.minutes",  "schedule.monthly.monthRelative.minutesFrom",
    "schedule.monthly.monthRelative.hour",     "schedule.monthly.monthRelative.hours",
    "schedule.monthly.monthRelative.hoursFrom"};
// Number of months, day.
inline constexpr PatternKeys kMonths = {
    "schedule.monthly.months.at",       "schedule.monthly.months.minute",
    "schedule.monthly.months.minutes",  "schedule.monthly.months.minutesFrom",
    "schedule.monthly.months.hour",     "schedule.monthly.months.hours",
    "schedule.monthly.months.hoursFrom"};
// Number of months, 29 to 31; in other months on the last day.
inline constexpr PatternKeys kMonthsOrLastDay = {
    "schedule.monthly.monthsOrLastDay.at",       "schedule.monthly.monthsOrLastDay.minute",
    "schedule.monthly.monthsOrLastDay.minutes",  "schedule.monthly.monthsOrLastDay.minutesFrom",
    "schedule.monthly.monthsOrLastDay.hour",     "schedule.monthly.monthsOrLastDay.hours",
    "schedule.monthly.monthsOrLastDay.hoursFrom"};
// Number of months, 29 to 31; not in other months.
inline constexpr PatternKeys kMonthsIfLong = {
    "schedule.monthly.monthsIfLong.at",       "schedule.monthly.monthsIfLong.minute",
    "schedule.monthly.monthsIfLong.minutes",  "schedule.monthly.monthsIfLong.minutesFrom",
    "schedule.monthly.monthsIfLong.hour",     "schedule.monthly.monthsIfLong.hours",
    "schedule.monthly.monthsIfLong.hoursFrom"};
// Number of months, relative day.
inline constexpr PatternKeys kMonthsRelative = {
    "schedule.monthly.monthsRelative.at",       "schedule.monthly.monthsRelative.minute",
    "schedule.monthly.monthsRelative.minutes",  "schedule.monthly.monthsRelative.minutesFrom",
    "schedule.monthly.monthsRelative.hour",     "schedule.monthly.monthsRelative.hours",
    "schedule.monthly.monthsRelative.hoursFrom"};
// Date.
inline constexpr PatternKeys kDate = {"schedule.yearly.date.at",       "schedule.yearly.date.minute",
                                      "schedule.yearly.date.minutes",  "schedule.yearly.date.minutesFrom",
                                      "schedule.yearly.date.hour",     "schedule.yearly.date.hours",
                                      "schedule.yearly.date.hoursFrom"};
// 29 February, in other years 28 February; no parameters.
inline constexpr PatternKeys kLeapDay = {
    "schedule.yearly.leapDay.at",       "schedule.yearly.leapDay.minute",
    "schedule.yearly.leapDay.minutes",  "schedule.yearly.leapDay.minutesFrom",
    "schedule.yearly.leapDay.hour",     "schedule.yearly.leapDay.hours",
    "schedule.yearly.leapDay.hoursFrom"};
// 29 February, not in other years; no parameters.
inline constexpr PatternKeys kLeapDayOnly = {
    "schedule.yearly.leapDayOnly.at",       "schedule.yearly.leapDayOnly.minute",
    "schedule.yearly.leapDayOnly.minutes",  "schedule.yearly.leapDayOnly.minutesFrom",
    "schedule.yearly.leapDayOnly.hour",     "schedule.yearly.leapDayOnly.hours",
    "schedule.yearly.leapDayOnly.hoursFrom"};
// Relative day, "of" month.
inline constexpr PatternKeys kYearRelative = {
    "schedule.yearly.relative.at",       "schedule.yearly.relative.minute",
    "schedule.yearly.relative.minutes",  "schedule.yearly.relative.minutesFrom",
    "schedule.yearly.relative.hour",     "schedule.yearly.relative.hours",
    "schedule.yearly.relative.hoursFrom"};

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
