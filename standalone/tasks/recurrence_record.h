/// @file
/// When a task runs, as plain values that are stored, compared, copied, and expanded by the schedule engine.
#pragma once

#include <plovix/host/recurrence.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <variant>

namespace plovix {

/// In every record, 0 means "not yet set" for an interval, a day, a month or a day of the week; pages and
/// engine then use 1. Numbers are stored as given, without checks.
struct DailyRecord {
  std::int32_t every_n_days = 0;  ///< interval in days
  bool weekdays_only = false;     ///< Monday to Friday only
  bool operator==(const DailyRecord&) const = default;
};

/// Every N weeks on chosen days.
struct WeeklyRecord {
  std::int32_t every_n_weeks = 0;  ///< interval in weeks
  std::array<bool, 7> days{};      ///< Sunday first
  bool operator==(const WeeklyRecord&) const = default;
};

/// The day in a month, for the monthly and yearly records, chosen in one of two ways.
struct DayChoice {
  bool use_relative_day = false;          ///< false: day_of_month counts; true: the other two
  std::int32_t day_of_month = 0;          ///< 1 to 31; for a specific day
  std::int32_t relative_week = 0;         ///< 0 to 4: first to fourth, last
  std::int32_t relative_day_of_week = 0;  ///< 1 Sunday to 7 Saturday, 8 any day, 9 weekday, 10 weekend day
  bool operator==(const DayChoice&) const = default;
};

/// Every N months on a day.
struct MonthlyRecord {
  std::int32_t every_n_months = 0;  ///< interval in months
  DayChoice day;                    ///< of the month
  bool operator==(const MonthlyRecord&) const = default;
};

/// Once a year on a day of a month.
struct YearlyRecord {
  std::int32_t month = 0;  ///< 1 January to 12 December
  DayChoice day;           ///< of that month
  bool operator==(const YearlyRecord&) const = default;
};

/// monostate: no pattern yet.
using PatternRecord = std::variant<std::monostate, DailyRecord, WeeklyRecord, MonthlyRecord, YearlyRecord>;

/// A schedule.
struct RecurrenceRecord {
  std::int32_t recurrence_type =
      0;                       ///< recurrence_type; the user's choice, which `pattern` may not match yet
  std::int32_t time_kind = 0;  ///< time_kind
  std::int32_t interval = 0;   ///< in minutes or hours, as time_kind says
  DateTime execution_time = kFirstExecutionTime;  ///< only its time of day counts
  PatternRecord pattern;                          ///< the one that was saved last
  bool operator==(const RecurrenceRecord&) const = default;

  /// The default of a new schedule: eight in the morning.
  static constexpr DateTime kFirstExecutionTime = kZeroDate + std::chrono::hours{8};
};

}  // namespace plovix
