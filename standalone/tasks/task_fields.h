/// @file
/// The plain fields of a task and of its parts by their documented names, one row for each. Everything that
/// refers to fields by name uses these tables: the script's members, exported tasks, columns.
#pragma once

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "task_record.h"

namespace plovix {

/// One row of the tables below.
template <class Record, class Value>
struct NamedField {
  std::string_view name;  ///< never changes, because files contain it
  Value Record::*field;   ///< the member with the value
};
/// A deduction guide that clang 16 needs.
template <class Record, class Value>
NamedField(std::string_view, Value Record::*) -> NamedField<Record, Value>;

/// A task's names and descriptions.
inline constexpr std::tuple kTaskTextFields{
    NamedField{"RecordMode", &TaskRecord::record_mode},
    NamedField{"UsesLanguageTags", &TaskRecord::uses_language_tags},
    NamedField{"Name", &TaskRecord::name},
    NamedField{"ShortDescription", &TaskRecord::short_description},
    NamedField{"Description", &TaskRecord::description},
    NamedField{"NameTag", &TaskRecord::name_tag},
    NamedField{"ShortDescriptionTag", &TaskRecord::short_description_tag},
    NamedField{"DescriptionTag", &TaskRecord::description_tag},
};
/// What a task works on, and how.
inline constexpr std::tuple kTaskSettingFields{
    NamedField{"DataObjectName", &TaskRecord::data_object_name},
    NamedField{"DataObjectCaption", &TaskRecord::data_object_caption},
    NamedField{"AllowAutomationManager", &TaskRecord::allow_automation_manager},
    NamedField{"SkipRowSelection", &TaskRecord::skip_row_selection},
    NamedField{"ProcessingMode", &TaskRecord::processing_mode},
    NamedField{"ProcessAllRecords", &TaskRecord::process_all_records},
    NamedField{"ProcessFailedRecords", &TaskRecord::process_failed_records},
    NamedField{"BaseDate", &TaskRecord::base_date},
    NamedField{"Query", &TaskRecord::query},
};
/// What depends on the place where the task is stored and its users; it is not exported.
inline constexpr std::tuple kTaskPlaceFields{
    NamedField{"Owner", &TaskRecord::owner},
    NamedField{"MayRun", &TaskRecord::may_run},
    NamedField{"MayEdit", &TaskRecord::may_edit},
    NamedField{"MayDelete", &TaskRecord::may_delete},
};
/// Every plain field except those that the storage assigns: id, version and time of change.
inline constexpr auto kTaskFields = std::tuple_cat(kTaskTextFields, kTaskSettingFields, kTaskPlaceFields);

/// Of a schedule, without its pattern.
inline constexpr std::tuple kRecurrenceFields{
    NamedField{"RecurrenceType", &RecurrenceRecord::recurrence_type},
    NamedField{"TimeKind", &RecurrenceRecord::time_kind},
    NamedField{"Interval", &RecurrenceRecord::interval},
    NamedField{"ExecutionTime", &RecurrenceRecord::execution_time},
};

/// The classes of patterns by name; "no pattern" is not among them. A class is stored as its position here,
/// so positions never change.
inline constexpr auto kPatternClasses = std::to_array<std::pair<std::string_view, PatternRecord>>({
    {"DailyPattern", DailyRecord{}},
    {"WeeklyPattern", WeeklyRecord{}},
    {"MonthlyPattern", MonthlyRecord{}},
    {"YearlyPattern", YearlyRecord{}},
});

/// @{
/// The row of a pattern's class, or of the class of that name; kPatternClasses.end() when there is none.
[[nodiscard]] inline const auto* ClassOf(const PatternRecord& pattern) {
  return std::ranges::find(kPatternClasses, pattern.index(),
                           [](const auto& row) { return row.second.index(); });
}
[[nodiscard]] inline const auto* ClassNamed(std::string_view name) {
  return std::ranges::find(kPatternClasses, name, [](const auto& row) { return row.first; });
}
/// @}

/// Each belongs to one class of pattern; those of DayChoice belong to the monthly and the yearly one.
inline constexpr std::tuple kPatternFields{
    NamedField{"EveryNDays", &DailyRecord::every_n_days},
    NamedField{"WeekdaysOnly", &DailyRecord::weekdays_only},
    NamedField{"EveryNWeeks", &WeeklyRecord::every_n_weeks},
    NamedField{"Day", &WeeklyRecord::days},
    NamedField{"EveryNMonths", &MonthlyRecord::every_n_months},
    NamedField{"Month", &YearlyRecord::month},
    NamedField{"UseRelativeDay", &DayChoice::use_relative_day},
    NamedField{"DayOfMonth", &DayChoice::day_of_month},
    NamedField{"RelativeWeek", &DayChoice::relative_week},
    NamedField{"RelativeDayOfWeek", &DayChoice::relative_day_of_week},
};

/// Of a category.
inline constexpr std::tuple kCategoryFields{
    NamedField{"Tag", &CategoryRecord::tag},
    NamedField{"Public", &CategoryRecord::is_public},
};
/// Without the settings, whose keys depend on the kind.
inline constexpr std::tuple kActionFields{
    NamedField{"Name", &ActionRecord::name},
    NamedField{"Kind", &ActionRecord::kind},
    NamedField{"RecordModes", &ActionRecord::record_modes},
    NamedField{"Capabilities", &ActionRecord::capabilities},
};
/// Of one line of a permission set.
inline constexpr std::tuple kPermissionFields{
    NamedField{"Subject", &PermissionRecord::subject}, NamedField{"Group", &PermissionRecord::is_group},
    NamedField{"View", &PermissionRecord::view},       NamedField{"Run", &PermissionRecord::run},
    NamedField{"Edit", &PermissionRecord::edit},       NamedField{"Delete", &PermissionRecord::erase},
};

/// Calls visit(name, pointer to member) for each field of a table, in its order.
template <class Fields, class Visit>
constexpr void ForEachField(const Fields& fields, Visit visit) {
  std::apply([&](const auto&... row) { (visit(row.name, row.field), ...); }, fields);
}

/// Calls visit(pointer to member) for the field of that name; false if the table has none.
template <class Fields, class Visit>
[[nodiscard]] bool VisitField(const Fields& fields, std::string_view name, Visit visit) {
  const auto matches = [&](const auto& row) {
    if (row.name == name) visit(row.field);
    return row.name == name;
  };
  return std::apply([&](const auto&... row) { return (matches(row) || ...); }, fields);
}

/// The value of a field of kPatternFields; nullptr if the pattern's class lacks the field.
template <class Pattern, class Record, class Value>
[[nodiscard]] auto* FieldIn(Pattern& pattern, Value Record::*field) {
  if constexpr (std::is_same_v<Record, DayChoice>) {
    auto* monthly = std::get_if<MonthlyRecord>(&pattern);
    auto* yearly = std::get_if<YearlyRecord>(&pattern);
    auto* day = monthly != nullptr ? &monthly->day : yearly != nullptr ? &yearly->day : nullptr;
    return day != nullptr ? &(day->*field) : nullptr;
  } else {
    auto* record = std::get_if<Record>(&pattern);
    return record != nullptr ? &(record->*field) : nullptr;
  }
}

}  // namespace plovix
