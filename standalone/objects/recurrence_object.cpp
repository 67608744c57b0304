#include "recurrence_object.h"

#include "arguments.h"

namespace plovix {
namespace {

Ref<PatternBase> MakePattern(const PatternRecord& record) {
  return std::visit(
      []<class Record>(const Record& held) -> Ref<PatternBase> {
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

bool WeeklyPatternObject::Day(std::int32_t index) {
  Called("WeeklyPattern.Day");
  return ItemAt(record.days, index);
}

void WeeklyPatternObject::SetDay(std::int32_t index, bool runs) {
  Called("WeeklyPattern.SetDay");
  ItemAt(record.days, index) = runs;
}

void RecurrenceObject::Assign(const RecurrenceRecord& recurrence) {
  record = recurrence;
  record.pattern = {};
  bool filled = false;
  VisitPattern(pattern_.Get(), [&](auto& object) {
    const auto* same = std::get_if<std::remove_reference_t<decltype(object.record)>>(&recurrence.pattern);
    filled = same != nullptr;
    if (filled) object.record = *same;
  });
  if (!filled) pattern_ = MakePattern(recurrence.pattern);
}

RecurrenceRecord RecurrenceObject::Record() const {
  RecurrenceRecord recurrence = record;
  recurrence.pattern = PatternValues(pattern_.Get()).value_or(PatternRecord{});
  return recurrence;
}

void RecurrenceObject::SetPattern(Ref<PatternBase> pattern) {
  Called("Recurrence.SetPattern");
  if (!PatternValues(pattern.Get())) throw Failure(failure_number::kTypeMismatch, "Type mismatch");
  pattern_ = std::move(pattern);
}

}  // namespace plovix
