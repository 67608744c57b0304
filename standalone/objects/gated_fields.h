/// @file
/// Objects whose gated members tell and set the plain fields of a record. The gate's name of such a member is
/// made from the name that task_fields.h gives the field.
#pragma once

#include <plovix/standalone/tasks/task_fields.h>

#include <string_view>
#include <type_traits>

#include "call_gate.h"

namespace plovix {

/// What kHostMembers calls the interface to a record.
template <class Record>
inline constexpr std::string_view kInterfaceTo;  // no other record has members here
/// @{
/// One for each record of which members are made here.
template <>
inline constexpr std::string_view kInterfaceTo<TaskRecord> = "AutoTask";
template <>
inline constexpr std::string_view kInterfaceTo<ActionRecord> = "Action";
template <>
inline constexpr std::string_view kInterfaceTo<CategoryRecord> = "Category";
template <>
inline constexpr std::string_view kInterfaceTo<RecurrenceRecord> = "Recurrence";
template <>
inline constexpr std::string_view kInterfaceTo<DailyRecord> = "DailyPattern";
template <>
inline constexpr std::string_view kInterfaceTo<WeeklyRecord> = "WeeklyPattern";
template <>
inline constexpr std::string_view kInterfaceTo<MonthlyRecord> = "MonthlyPattern";
template <>
inline constexpr std::string_view kInterfaceTo<YearlyRecord> = "YearlyPattern";
/// @}

/// The table that names the fields of an Owner.
template <class Owner>
[[nodiscard]] consteval const auto& TableOf() {
  if constexpr (std::is_same_v<Owner, TaskRecord>) {
    return kTaskFields;
  } else if constexpr (std::is_same_v<Owner, ActionRecord>) {
    return kActionFields;
  } else if constexpr (std::is_same_v<Owner, CategoryRecord>) {
    return kCategoryFields;
  } else if constexpr (std::is_same_v<Owner, RecurrenceRecord>) {
    return kRecurrenceFields;
  } else {
    return kPatternFields;
  }
}

/// The listed member of Record's interface that tells the field, or with "Set" as `verb` sets it.
template <class Record, class Owner, class Value>
[[nodiscard]] consteval HostMember MemberFor(std::string_view verb, Value Owner::*field) {
  std::string_view name;
  ForEachField(TableOf<Owner>(), [&](std::string_view each, auto place) {
    if constexpr (std::is_same_v<decltype(place), Value Owner::*>) {
      if (place == field) name = each;
    }
  });
  return {kInterfaceTo<Record>, verb, name};
}

/// An object over a record.
template <class Interface, class Record>
class FieldsObject : public Interface {
 public:
  /// With nothing set, or a copy of `initial`.
  explicit FieldsObject(const Record& initial = {}) : record(initial) {}

  Record record;  ///< the host's own view, not gated

 protected:
  /// One gated member: the field of the record, or of its day.
  template <auto kField>
  [[nodiscard]] auto Get() {
    Called(MemberFor<Record>("", kField));
    return At<kField>();
  }
  /// One gated member: sets that field.
  template <auto kField, class Value>
  void Put(const Value& value) {
    Called(MemberFor<Record>("Set", kField));
    At<kField>() = value;
  }

 private:
  template <auto kField>
  auto& At() {
    if constexpr (requires { record.*kField; }) {
      return record.*kField;
    } else {
      return record.day.*kField;
    }
  }
};

}  // namespace plovix
