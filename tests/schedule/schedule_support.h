// Short forms for records and moments in the tables of the schedule's tests.
#pragma once

#include <gtest/gtest.h>
#include <plovix/standalone/schedule/schedule.h>
#include <plovix/standalone/text/iso_time.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace plovix::schedule_tests {

// "2031-02-03" or "2031-02-03 04:05" or "2031-02-03 04:05:06".
inline DateTime Time(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  const char* format = "%d-%d-%d %d:%d:%d";
  EXPECT_GE(std::sscanf(text.c_str(), format, &year, &month, &day, &hour, &minute, &second), 3) << text;
  return std::chrono::local_days{std::chrono::year{year} / month / day} + std::chrono::hours{hour} +
         std::chrono::minutes{minute} + std::chrono::seconds{second};
}

inline std::chrono::local_days Day(const std::string& text) {
  return std::chrono::floor<std::chrono::days>(Time(text));
}

// As Time reads it, seconds only where they are not 0.
inline std::string Text(DateTime time) {
  std::string text = IsoDateTime(time);
  text.replace(10, 1, " ");
  return text.ends_with(":00") ? text.substr(0, 16) : text;
}

inline DayChoice OnDay(std::int32_t day) {
  return {false, day, 0, 0};
}

// Week 0 to 4 and day of the week 1 to 10, as in the record.
inline DayChoice OnThe(std::int32_t week, std::int32_t day_of_week) {
  return {true, 0, week, day_of_week};
}

inline RecurrenceRecord AtTime(const PatternRecord& pattern, const std::string& time = "08:00") {
  return {0, time_kind::kAtTime, 0, Time("1899-12-30 " + time), pattern};
}

// `kind`: time_kind.
inline RecurrenceRecord Every(std::int32_t interval, std::int32_t kind, const PatternRecord& pattern) {
  return {0, kind, interval, kZeroDate, pattern};
}

inline PatternRecord AnyPattern(std::mt19937& random) {
  const auto pick = [&](int low, int high) { return std::uniform_int_distribution<int>{low, high}(random); };
  WeeklyRecord weekly{pick(1, 4), {}};
  for (bool& runs : weekly.days) runs = pick(0, 2) == 0;
  weekly.days.at(static_cast<std::size_t>(pick(0, 6))) = true;
  const DayChoice day = pick(0, 1) == 0 ? OnDay(pick(1, 31)) : OnThe(pick(0, 4), pick(1, 10));
  const PatternRecord patterns[] = {DailyRecord{pick(1, 15), pick(0, 2) == 0}, weekly,
                                    MonthlyRecord{pick(1, 14), day}, YearlyRecord{pick(1, 12), day}};
  return patterns[pick(0, 3)];
}

// Asks a schedule for all of its first runs in every way; gives the first run that it has wrong, or "".
inline std::string WrongRun(const Schedule& schedule, const std::vector<DateTime>& runs) {
  constexpr std::chrono::seconds kSecond{1};
  std::optional<DateTime> before;
  for (const DateTime run : runs) {
    const DateTime other = run + std::chrono::days{1};  // may be a run
    if (schedule.Next(before.value_or(DateTime::min())) != run || schedule.Next(run - kSecond) != run ||
        schedule.Previous(run) != before || schedule.Previous(run + kSecond) != run || !schedule.IsRun(run) ||
        schedule.IsRun(run + kSecond) || schedule.IsRun(other) != (schedule.Next(other - kSecond) == other))
      return Text(run);
    before = run;
  }
  return "";
}

}  // namespace plovix::schedule_tests
