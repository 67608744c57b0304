/// @file
/// When a scheduled task runs: the time within a day, and the pattern of days. Implemented by the host, made
/// by ObjectFactory; the pages edit the objects in place. Numbers are kept as given; nothing here checks
/// ranges.
#pragma once

#include <cstdint>

#include "value.h"

namespace plovix {

/// Recurrence::RecurrenceType. Stored with the task: these never change. Other values show no choice.
namespace recurrence_type {
inline constexpr std::int32_t kDaily = 0;    ///< DailyPattern
inline constexpr std::int32_t kWeekly = 1;   ///< WeeklyPattern
inline constexpr std::int32_t kMonthly = 2;  ///< MonthlyPattern
inline constexpr std::int32_t kYearly = 3;   ///< YearlyPattern
}  // namespace recurrence_type

/// Recurrence::TimeKind; other values show no choice.
namespace time_kind {
inline constexpr std::int32_t kAtTime = 0;         ///< once a day, at Recurrence::ExecutionTime
inline constexpr std::int32_t kEveryNMinutes = 1;  ///< every Recurrence::Interval minutes
inline constexpr std::int32_t kEveryNHours = 2;    ///< every Recurrence::Interval hours
}  // namespace time_kind

/// The common base of the four patterns. A page finds out by the class which one it has.
class PatternBase : public HostObject {};

/// Every N days. Set by the DailyRecurrence page.
class DailyPattern : public PatternBase {
 public:
  /// @{
  /// 0: not yet set.
  [[nodiscard]] virtual std::int32_t EveryNDays() = 0;
  virtual void SetEveryNDays(std::int32_t days) = 0;
  /// @}
  /// @{
  /// Monday to Friday only.
  [[nodiscard]] virtual bool WeekdaysOnly() = 0;
  virtual void SetWeekdaysOnly(bool only) = 0;
  /// @}
};

/// Every N weeks on chosen days. A week starts on Sunday in every locale. Set by the WeeklyRecurrence page.
class WeeklyPattern : public PatternBase {
 public:
  /// @{
  /// 0: not yet set.
  [[nodiscard]] virtual std::int32_t EveryNWeeks() = 0;
  virtual void SetEveryNWeeks(std::int32_t weeks) = 0;
  /// @}
  /// @{
  /// 1 Sunday to 7 Saturday; both fail with 9 outside.
  [[nodiscard]] virtual bool Day(std::int32_t index) = 0;
  virtual void SetDay(std::int32_t index, bool runs) = 0;
  /// @}
};

/// A day of a month, chosen by its number or as the n-th day of a kind ("the second Monday").
class DayInMonthPattern : public PatternBase {
 public:
  /// @{
  /// True: RelativeWeek and RelativeDayOfWeek apply; false: DayOfMonth applies.
  [[nodiscard]] virtual bool UseRelativeDay() = 0;
  virtual void SetUseRelativeDay(bool relative) = 0;
  /// @}
  /// @{
  /// 1 to 31; 0: not yet set.
  [[nodiscard]] virtual std::int32_t DayOfMonth() = 0;
  virtual void SetDayOfMonth(std::int32_t day) = 0;
  /// @}
  /// @{
  /// 0 to 4: first to fourth, last.
  [[nodiscard]] virtual std::int32_t RelativeWeek() = 0;
  virtual void SetRelativeWeek(std::int32_t week) = 0;
  /// @}
  /// @{
  /// 1 Sunday to 7 Saturday, 8 any day, 9 weekday, 10 weekend day; 0: not yet set
  [[nodiscard]] virtual std::int32_t RelativeDayOfWeek() = 0;
  virtual void SetRelativeDayOfWeek(std::int32_t day) = 0;
  /// @}
};

/// Every N months on such a day. Set by the MonthlyRecurrence page.
class MonthlyPattern : public DayInMonthPattern {
 public:
  /// @{
  /// 0: not yet set.
  [[nodiscard]] virtual std::int32_t EveryNMonths() = 0;
  virtual void SetEveryNMonths(std::int32_t months) = 0;
  /// @}
};

/// Once a year on such a day of a month. Set by the YearlyRecurrence page.
class YearlyPattern : public DayInMonthPattern {
 public:
  /// @{
  /// 1 January to 12 December; 0: not yet set.
  [[nodiscard]] virtual std::int32_t Month() = 0;
  virtual void SetMonth(std::int32_t month) = 0;
  /// @}
};

/// When a task runs. The RecurrenceTime page sets the time, RecurrencePattern the kind.
class Recurrence : public HostObject {
 public:
  /// @{
  /// One of recurrence_type: what the user chose; the pattern follows when its page is left.
  [[nodiscard]] virtual std::int32_t RecurrenceType() = 0;
  virtual void SetRecurrenceType(std::int32_t type) = 0;
  /// @}
  /// @{
  /// The current pattern, by reference; null while the task has none.
  [[nodiscard]] virtual Ref<PatternBase> Pattern() = 0;
  virtual void SetPattern(Ref<PatternBase> pattern) = 0;
  /// @}
  /// @{
  /// One of time_kind.
  [[nodiscard]] virtual std::int32_t TimeKind() = 0;
  virtual void SetTimeKind(std::int32_t kind) = 0;
  /// @}
  /// @{
  /// The N of "every N minutes" or "every N hours", as TimeKind says; 0: not yet set.
  [[nodiscard]] virtual std::int32_t Interval() = 0;
  virtual void SetInterval(std::int32_t interval) = 0;
  /// @}
  /// @{
  /// Only its time of day counts.
  [[nodiscard]] virtual DateTime ExecutionTime() = 0;
  virtual void SetExecutionTime(DateTime time) = 0;
  /// @}
};

}  // namespace plovix
