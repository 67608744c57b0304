#include "recurrence_object.h"

namespace plovix {
namespace {

std::shared_ptr<PatternBase> MakePattern(const PatternRecord& record) {
  return std::visit(
      []<class Record>(const Record& held) -> std::shared_ptr<PatternBase> {
        if constexpr (std::is_same_v<Record, DailyRecord>) return std::make_shared<DailyPatternObject>(held);
        if constexpr (std::is_same_v<Record, WeeklyRecord>)
          return std::make_shared<WeeklyPatternObject>(held);
        if constexpr (std::is_same_v<Record, MonthlyRecord>)
          return std::make_shared<MonthlyPatternObject>(held);
        if constexpr (std::is_same_v<Record, YearlyRecord>)
          return std::make_shared<YearlyPatternObject>(held);
        return nullptr;
      },
      record);
}

// Calls `visit` with the pattern as one of this host's classes; false for any other class.
template <class... Objects, class Visit>
bool VisitAs(PatternBase* pattern, Visit visit) {
  const auto try_as = [&](auto* object) { return object != nullptr && (visit(*object), true); };
  return (try_as(dynamic_cast<Objects*>(pattern)) || ...);
}

template <class Visit>
bool VisitPattern(PatternBase* pattern, Visit visit) {
  return VisitAs<DailyPatternObject, WeeklyPatternObject, MonthlyPatternObject, YearlyPatternObject>(pattern,
                                                                                                     visit);
}

}  // namespace

std::optional<PatternRecord> PatternValues(PatternBase* pattern) {
  PatternRecord record;
  if (pattern == nullptr || VisitPattern(pattern, [&](const auto& object) { record = object.record; }))
    return record;
  return std::nullopt;
}

std::int32_t DailyPatternObject::EveryNDays() {
  Called("DailyPattern.EveryNDays");
  return record.every_n_days;
}

void DailyPatternObject::SetEveryNDays(std::int32_t days) {
  Called("DailyPattern.SetEveryNDays");
  record.every_n_days = days;
}

bool DailyPatternObject::WeekdaysOnly() {
  Called("DailyPattern.WeekdaysOnly");
  return record.weekdays_only;
}

void DailyPatternObject::SetWeekdaysOnly(bool only) {
  Called("DailyPattern.SetWeekdaysOnly");
  record.weekdays_only = only;
}

std::int32_t WeeklyPatternObject::EveryNWeeks() {
  Called("WeeklyPattern.EveryNWeeks");
  return record.every_n_weeks;
}

void WeeklyPatternObject::SetEveryNWeeks(std::int32_t weeks) {
  Called("WeeklyPattern.SetEveryNWeeks");
  record.every_n_weeks = weeks;
}

bool& WeeklyPatternObject::At(std::int32_t index) {
  if (index < 1 || index > static_cast<std::int32_t>(record.days.size())) {
    throw Failure(failure_number::kSubscriptOutOfRange, "Subscript out of range");
  }
  return record.days[static_cast<std::size_t>(index) - 1];
}

bool WeeklyPatternObject::Day(std::int32_t index) {
  Called("WeeklyPattern.Day");
  return At(index);
}

void WeeklyPatternObject::SetDay(std::int32_t index, bool runs) {
  Called("WeeklyPattern.SetDay");
  At(index) = runs;
}

std::int32_t MonthlyPatternObject::EveryNMonths() {
  Called("MonthlyPattern.EveryNMonths");
  return record.every_n_months;
}

void MonthlyPatternObject::SetEveryNMonths(std::int32_t months) {
  Called("MonthlyPattern.SetEveryNMonths");
  record.every_n_months = months;
}

std::int32_t YearlyPatternObject::Month() {
  Called("YearlyPattern.Month");
  return record.month;
}

void YearlyPatternObject::SetMonth(std::int32_t month) {
  Called("YearlyPattern.SetMonth");
  record.month = month;
}

void RecurrenceObject::Assign(const RecurrenceRecord& record) {
  fields_ = record;
  fields_.pattern = {};
  bool filled = false;
  VisitPattern(pattern_.get(), [&](auto& object) {
    const auto* same = std::get_if<std::remove_reference_t<decltype(object.record)>>(&record.pattern);
    filled = same != nullptr;
    if (filled) object.record = *same;
  });
  if (!filled) pattern_ = MakePattern(record.pattern);
}

RecurrenceRecord RecurrenceObject::Record() const {
  RecurrenceRecord record = fields_;
  record.pattern = PatternValues(pattern_.get()).value_or(PatternRecord{});
  return record;
}

std::int32_t RecurrenceObject::RecurrenceType() {
  Called("Recurrence.RecurrenceType");
  return fields_.recurrence_type;
}

void RecurrenceObject::SetRecurrenceType(std::int32_t type) {
  Called("Recurrence.SetRecurrenceType");
  fields_.recurrence_type = type;
}

std::shared_ptr<PatternBase> RecurrenceObject::Pattern() {
  Called("Recurrence.Pattern");
  return pattern_;
}

void RecurrenceObject::SetPattern(std::shared_ptr<PatternBase> pattern) {
  Called("Recurrence.SetPattern");
  if (!PatternValues(pattern.get())) throw Failure(failure_number::kTypeMismatch, "Type mismatch");
  pattern_ = std::move(pattern);
}

std::int32_t RecurrenceObject::TimeKind() {
  Called("Recurrence.TimeKind");
  return fields_.time_kind;
}

void RecurrenceObject::SetTimeKind(std::int32_t kind) {
  Called("Recurrence.SetTimeKind");
  fields_.time_kind = kind;
}

std::int32_t RecurrenceObject::Interval() {
  Called("Recurrence.Interval");
  return fields_.interval;
}

void RecurrenceObject::SetInterval(std::int32_t interval) {
  Called("Recurrence.SetInterval");
  fields_.interval = interval;
}

DateTime RecurrenceObject::ExecutionTime() {
  Called("Recurrence.ExecutionTime");
  return fields_.execution_time;
}

void RecurrenceObject::SetExecutionTime(DateTime time) {
  Called("Recurrence.SetExecutionTime");
  fields_.execution_time = time;
}

}  // namespace plovix
