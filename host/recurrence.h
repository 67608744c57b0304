// When a scheduled task runs: the time within a day, and the pattern of days. Implemented by the host; the
// pages edit the objects in place. Numbers are kept as given; nothing here checks a range.
#pragma once

#include <cstdint>
#include <memory>

#include "value.h"

namespace plovix {

// "No date": 1899-12-30 00:00:00, the zero of the customary date-time values.
inline constexpr DateTime kZeroDate{std::chrono::local_days{std::chrono::year{1899} / 12 / 30}};

// Recurrence::RecurrenceType. Stored with the task: these never change. Other values show no choice.
namespace recurrence_type {
inline constexpr std::int32_t kDaily = 0;
inline constexpr std::int32_t kWeekly = 1;
inline constexpr std::int32_t kMonthly = 2;
inline constexpr std::int32_t kYearly = 3;
}  // namespace recurrence_type

// Recurrence::TimeKind; other values show no choice.
namespace time_kind {
inline constexpr std::int32_t kAtTime = 0;
inline constexpr std::int32_t kEveryNMinutes = 1;
inline constexpr std::int32_t kEveryNHours = 2;
}  // namespace time_kind

// The common face of the four patterns.
class PatternBase : public HostObject {};

// Every N days.
class DailyPattern : public PatternBase {
 public:
  [[nodiscard]] virtual std::int32_t EveryNDays() = 0;  // 0: not yet set
  virtual void SetEveryNDays(std::int32_t days) = 0;
  [[nodiscard]] virtual bool WeekdaysOnly() = 0;
  virtual void SetWeekdaysOnly(bool only) = 0;
};

// Every N weeks on chosen days. A week starts on Sunday, whatever the user's locale.
class WeeklyPattern : public PatternBase {
 public:
  [[nodiscard]] virtual std::int32_t EveryNWeeks() = 0;  // 0: not yet set
  virtual void SetEveryNWeeks(std::int32_t weeks) = 0;
  // 1 Sunday to 7 Saturday; both fail with 9 outside.
  [[nodiscard]] virtual bool Day(std::int32_t index) = 0;
  virtual void SetDay(std::int32_t index, bool runs) = 0;
};

// A day of a month, chosen by its number or as the n-th day of a kind.
class DayInMonthPattern : public PatternBase {
 public:
  [[nodiscard]] virtual bool UseRelativeDay() = 0;
  virtual void SetUseRelativeDay(bool relative) = 0;
  [[nodiscard]] virtual std::int32_t DayOfMonth() = 0;  // 1 to 31; 0: not yet set
  virtual void SetDayOfMonth(std::int32_t day) = 0;
  [[nodiscard]] virtual std::int32_t RelativeWeek() = 0;  // 0 to 4: first to fourth, last
  virtual void SetRelativeWeek(std::int32_t week) = 0;
  // 1 Sunday to 7 Saturday, 8 any day, 9 weekday, 10 weekend day; 0: not yet set
  [[nodiscard]] virtual std::int32_t RelativeDayOfWeek() = 0;
  virtual void SetRelativeDayOfWeek(std::int32_t day) = 0;
};

class MonthlyPattern : public DayInMonthPattern {
 public:
  [[nodiscard]] virtual std::int32_t EveryNMonths() = 0;  // 0: not yet set
  virtual void SetEveryNMonths(std::int32_t months) = 0;
};

class YearlyPattern : public DayInMonthPattern {
 public:
  [[nodiscard]] virtual std::int32_t Month() = 0;  // 1 January to 12 December; 0: not yet set
  virtual void SetMonth(std::int32_t month) = 0;
};

class Recurrence : public HostObject {
 public:
  [[nodiscard]] virtual std::int32_t RecurrenceType() = 0;  // one of recurrence_type
  virtual void SetRecurrenceType(std::int32_t type) = 0;
  // The current pattern, by reference; nothing while the task has none.
  [[nodiscard]] virtual std::shared_ptr<PatternBase> Pattern() = 0;
  virtual void SetPattern(std::shared_ptr<PatternBase> pattern) = 0;
  [[nodiscard]] virtual std::int32_t TimeKind() = 0;  // one of time_kind
  virtual void SetTimeKind(std::int32_t kind) = 0;
  // The N of every N minutes or hours, TimeKind says which; 0: not yet set.
  [[nodiscard]] virtual std::int32_t Interval() = 0;
  virtual void SetInterval(std::int32_t interval) = 0;
  [[nodiscard]] virtual DateTime ExecutionTime() = 0;  // only its time of day counts
  virtual void SetExecutionTime(DateTime time) = 0;
};

}  // namespace plovix
