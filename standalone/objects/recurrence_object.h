/// @file
/// The stand-alone host's objects behind Recurrence and its patterns.
#pragma once

#include <plovix/host/recurrence.h>
#include <plovix/standalone/tasks/recurrence_record.h>

#include <memory>
#include <optional>

#include "call_gate.h"

namespace plovix {

/// A daily pattern over plain values.
class DailyPatternObject final : public DailyPattern {
 public:
  /// With nothing set, or a copy of `initial`.
  explicit DailyPatternObject(const DailyRecord& initial = {}) : record(initial) {}
  [[nodiscard]] std::int32_t EveryNDays() override;
  void SetEveryNDays(std::int32_t days) override;
  [[nodiscard]] bool WeekdaysOnly() override;
  void SetWeekdaysOnly(bool only) override;

  DailyRecord record;  ///< the host's own view, not gated
};

/// A weekly pattern over plain values.
class WeeklyPatternObject final : public WeeklyPattern {
 public:
  /// With nothing set, or a copy of `initial`.
  explicit WeeklyPatternObject(const WeeklyRecord& initial = {}) : record(initial) {}
  [[nodiscard]] std::int32_t EveryNWeeks() override;
  void SetEveryNWeeks(std::int32_t weeks) override;
  [[nodiscard]] bool Day(std::int32_t index) override;
  void SetDay(std::int32_t index, bool runs) override;

  WeeklyRecord record;  ///< the host's own view, not gated

 private:
  bool& At(std::int32_t index);
};

/// The gate's names for the members that the monthly and yearly patterns share.
struct DayMembers {
  /// @{
  /// The member of that name.
  HostMember use_relative_day, set_use_relative_day;
  HostMember day_of_month, set_day_of_month;
  HostMember relative_week, set_relative_week;
  HostMember relative_day_of_week, set_relative_day_of_week;
  /// @}
};
/// Of MonthlyPattern.
inline constexpr DayMembers kMonthlyMembers{
    "MonthlyPattern.UseRelativeDay",    "MonthlyPattern.SetUseRelativeDay",
    "MonthlyPattern.DayOfMonth",        "MonthlyPattern.SetDayOfMonth",
    "MonthlyPattern.RelativeWeek",      "MonthlyPattern.SetRelativeWeek",
    "MonthlyPattern.RelativeDayOfWeek", "MonthlyPattern.SetRelativeDayOfWeek"};
/// Of YearlyPattern.
inline constexpr DayMembers kYearlyMembers{
    "YearlyPattern.UseRelativeDay",    "YearlyPattern.SetUseRelativeDay",   "YearlyPattern.DayOfMonth",
    "YearlyPattern.SetDayOfMonth",     "YearlyPattern.RelativeWeek",        "YearlyPattern.SetRelativeWeek",
    "YearlyPattern.RelativeDayOfWeek", "YearlyPattern.SetRelativeDayOfWeek"};

/// What the two objects share, over a Record with a DayChoice `day`.
template <class Interface, class Record, const DayMembers& kMembers>
class DayInMonthObject : public Interface {
 public:
  /// Copies `initial`.
  explicit DayInMonthObject(const Record& initial) : record(initial) {}
  [[nodiscard]] bool UseRelativeDay() final {
    return Get(kMembers.use_relative_day, record.day.use_relative_day);
  }
  void SetUseRelativeDay(bool relative) final {
    Set(kMembers.set_use_relative_day, record.day.use_relative_day, relative);
  }
  [[nodiscard]] std::int32_t DayOfMonth() final {
    return Get(kMembers.day_of_month, record.day.day_of_month);
  }
  void SetDayOfMonth(std::int32_t day) final { Set(kMembers.set_day_of_month, record.day.day_of_month, day); }
  [[nodiscard]] std::int32_t RelativeWeek() final {
    return Get(kMembers.relative_week, record.day.relative_week);
  }
  void SetRelativeWeek(std::int32_t week) final {
    Set(kMembers.set_relative_week, record.day.relative_week, week);
  }
  [[nodiscard]] std::int32_t RelativeDayOfWeek() final {
    return Get(kMembers.relative_day_of_week, record.day.relative_day_of_week);
  }
  void SetRelativeDayOfWeek(std::int32_t day) final {
    Set(kMembers.set_relative_day_of_week, record.day.relative_day_of_week, day);
  }

  Record record;  ///< the host's own view, not gated

 private:
  template <class T>
  static T Get(HostMember member, const T& field) {
    Called(member);
    return field;
  }
  template <class T>
  static void Set(HostMember member, T& field, T value) {
    Called(member);
    field = value;
  }
};

/// A monthly pattern over plain values.
class MonthlyPatternObject final : public DayInMonthObject<MonthlyPattern, MonthlyRecord, kMonthlyMembers> {
 public:
  /// With nothing set, or a copy of `initial`.
  explicit MonthlyPatternObject(const MonthlyRecord& initial = {}) : DayInMonthObject(initial) {}
  [[nodiscard]] std::int32_t EveryNMonths() override;
  void SetEveryNMonths(std::int32_t months) override;
};

/// A yearly pattern over plain values.
class YearlyPatternObject final : public DayInMonthObject<YearlyPattern, YearlyRecord, kYearlyMembers> {
 public:
  /// With nothing set, or a copy of `initial`.
  explicit YearlyPatternObject(const YearlyRecord& initial = {}) : DayInMonthObject(initial) {}
  [[nodiscard]] std::int32_t Month() override;
  void SetMonth(std::int32_t month) override;
};

/// A schedule over plain values, with its pattern as a separate object.
class RecurrenceObject final : public Recurrence {
 public:
  /// With the initial values, or those of `initial`.
  explicit RecurrenceObject(const RecurrenceRecord& initial = {}) { Assign(initial); }
  /// Copies the values; a pattern object of the same kind is kept and updated, so that its holders see the
  /// change.
  void Assign(const RecurrenceRecord& record);
  /// The schedule as values, including those of the current pattern object.
  [[nodiscard]] RecurrenceRecord Record() const;

  [[nodiscard]] std::int32_t RecurrenceType() override;
  void SetRecurrenceType(std::int32_t type) override;
  [[nodiscard]] std::shared_ptr<PatternBase> Pattern() override;
  /// Fails with 13 on a pattern that this host did not create.
  void SetPattern(std::shared_ptr<PatternBase> pattern) override;
  [[nodiscard]] std::int32_t TimeKind() override;
  void SetTimeKind(std::int32_t kind) override;
  [[nodiscard]] std::int32_t Interval() override;
  void SetInterval(std::int32_t interval) override;
  [[nodiscard]] DateTime ExecutionTime() override;
  void SetExecutionTime(DateTime time) override;

 private:
  RecurrenceRecord fields_;  // without its pattern
  std::shared_ptr<PatternBase> pattern_;
};

/// The values of a pattern object, or of no pattern for nullptr; nothing for a pattern that this host did not
/// create.
[[nodiscard]] std::optional<PatternRecord> PatternValues(PatternBase* pattern);

}  // namespace plovix
