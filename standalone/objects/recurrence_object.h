/// @file
/// The stand-alone host's objects behind Recurrence and its patterns.
#pragma once

#include <plovix/host/recurrence.h>
#include <plovix/standalone/tasks/recurrence_record.h>

#include <memory>
#include <optional>

#include "gated_fields.h"

namespace plovix {

/// A daily pattern over plain values.
class DailyPatternObject final : public FieldsObject<DailyPattern, DailyRecord> {
 public:
  using FieldsObject::FieldsObject;
  [[nodiscard]] std::int32_t EveryNDays() override { return Get<&DailyRecord::every_n_days>(); }
  void SetEveryNDays(std::int32_t days) override { Put<&DailyRecord::every_n_days>(days); }
  [[nodiscard]] bool WeekdaysOnly() override { return Get<&DailyRecord::weekdays_only>(); }
  void SetWeekdaysOnly(bool only) override { Put<&DailyRecord::weekdays_only>(only); }
};

/// A weekly pattern over plain values.
class WeeklyPatternObject final : public FieldsObject<WeeklyPattern, WeeklyRecord> {
 public:
  using FieldsObject::FieldsObject;
  [[nodiscard]] std::int32_t EveryNWeeks() override { return Get<&WeeklyRecord::every_n_weeks>(); }
  void SetEveryNWeeks(std::int32_t weeks) override { Put<&WeeklyRecord::every_n_weeks>(weeks); }
  [[nodiscard]] bool Day(std::int32_t index) override;
  void SetDay(std::int32_t index, bool runs) override;
};

/// What the monthly and the yearly pattern have in common, over a Record with a DayChoice `day`.
template <class Interface, class Record>
class DayInMonthObject : public FieldsObject<Interface, Record> {
 public:
  using FieldsObject<Interface, Record>::FieldsObject;
  [[nodiscard]] bool UseRelativeDay() final { return Get<&DayChoice::use_relative_day>(); }
  void SetUseRelativeDay(bool relative) final { Put<&DayChoice::use_relative_day>(relative); }
  [[nodiscard]] std::int32_t DayOfMonth() final { return Get<&DayChoice::day_of_month>(); }
  void SetDayOfMonth(std::int32_t day) final { Put<&DayChoice::day_of_month>(day); }
  [[nodiscard]] std::int32_t RelativeWeek() final { return Get<&DayChoice::relative_week>(); }
  void SetRelativeWeek(std::int32_t week) final { Put<&DayChoice::relative_week>(week); }
  [[nodiscard]] std::int32_t RelativeDayOfWeek() final { return Get<&DayChoice::relative_day_of_week>(); }
  void SetRelativeDayOfWeek(std::int32_t day) final { Put<&DayChoice::relative_day_of_week>(day); }

 protected:
  /// @{
  /// Those of the base, which depends on the parameters.
  template <auto kField>
  [[nodiscard]] auto Get() {
    return FieldsObject<Interface, Record>::template Get<kField>();
  }
  template <auto kField, class Value>
  void Put(const Value& value) {
    FieldsObject<Interface, Record>::template Put<kField>(value);
  }
  /// @}
};

/// A monthly pattern over plain values.
class MonthlyPatternObject final : public DayInMonthObject<MonthlyPattern, MonthlyRecord> {
 public:
  using DayInMonthObject::DayInMonthObject;
  [[nodiscard]] std::int32_t EveryNMonths() override { return Get<&MonthlyRecord::every_n_months>(); }
  void SetEveryNMonths(std::int32_t months) override { Put<&MonthlyRecord::every_n_months>(months); }
};

/// A yearly pattern over plain values.
class YearlyPatternObject final : public DayInMonthObject<YearlyPattern, YearlyRecord> {
 public:
  using DayInMonthObject::DayInMonthObject;
  [[nodiscard]] std::int32_t Month() override { return Get<&YearlyRecord::month>(); }
  void SetMonth(std::int32_t month) override { Put<&YearlyRecord::month>(month); }
};

/// A schedule over plain values, with its pattern as a separate object.
class RecurrenceObject final : public FieldsObject<Recurrence, RecurrenceRecord> {
 public:
  /// With nothing set, or these values.
  explicit RecurrenceObject(const RecurrenceRecord& initial = {}) { Assign(initial); }
  /// Copies the values; a pattern object of the same kind is kept and updated, so that its holders see the
  /// change.
  void Assign(const RecurrenceRecord& recurrence);
  /// The schedule as values, including those of the current pattern object.
  [[nodiscard]] RecurrenceRecord Record() const;

  [[nodiscard]] std::int32_t RecurrenceType() override { return Get<&RecurrenceRecord::recurrence_type>(); }
  void SetRecurrenceType(std::int32_t type) override { Put<&RecurrenceRecord::recurrence_type>(type); }
  [[nodiscard]] Ref<PatternBase> Pattern() override { return Gated("Recurrence.Pattern", pattern_); }
  /// Fails with 13 on a pattern that this host did not create.
  void SetPattern(Ref<PatternBase> pattern) override;
  [[nodiscard]] std::int32_t TimeKind() override { return Get<&RecurrenceRecord::time_kind>(); }
  void SetTimeKind(std::int32_t kind) override { Put<&RecurrenceRecord::time_kind>(kind); }
  [[nodiscard]] std::int32_t Interval() override { return Get<&RecurrenceRecord::interval>(); }
  void SetInterval(std::int32_t interval) override { Put<&RecurrenceRecord::interval>(interval); }
  [[nodiscard]] DateTime ExecutionTime() override { return Get<&RecurrenceRecord::execution_time>(); }
  void SetExecutionTime(DateTime time) override { Put<&RecurrenceRecord::execution_time>(time); }

 private:
  Ref<PatternBase> pattern_;  // which `record` is without
};

/// The values of a pattern object, or of no pattern for nullptr; nothing for a pattern that this host did not
/// create.
[[nodiscard]] std::optional<PatternRecord> PatternValues(PatternBase* pattern);

}  // namespace plovix
