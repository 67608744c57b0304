#include "task_columns.h"

#include <plovix/standalone/tasks/task_fields.h>

#include <array>
#include <tuple>
#include <type_traits>
#include <utility>

#include "column_values.h"
#include "permission_column.h"

namespace plovix {
namespace {

// Where the fields of the tables stand in a task, or in an action.
constexpr auto kInRecord = [](auto& record, auto field) { return &(record.*field); };
constexpr auto kInRecurrence = [](auto& task, auto field) {
  return task.recurrence ? &((*task.recurrence).*field) : nullptr;
};
constexpr auto kInPattern = [](auto& task, auto field) {
  return task.recurrence ? FieldIn(task.recurrence->pattern, field) : nullptr;
};

// The columns of one field: one under its name, or one for each day of a week.
template <auto kIn, auto kField, class Record = TaskRecord>
constexpr auto ColumnsOf(std::string_view name) {
  return std::array{Column<[](auto& record) { return kIn(record, kField); }, Record>(name)};
}

template <std::size_t kDay>
constexpr auto kOfWeek = [](auto& task) {
  auto* days = kInPattern(task, &WeeklyRecord::days);
  return days != nullptr ? &(*days)[kDay] : nullptr;
};

template <>
constexpr auto ColumnsOf<kInPattern, &WeeklyRecord::days, TaskRecord>(std::string_view /*name*/) {
  return std::array{Column<kOfWeek<0>, TaskRecord>("Sunday"),   Column<kOfWeek<1>, TaskRecord>("Monday"),
                    Column<kOfWeek<2>, TaskRecord>("Tuesday"),  Column<kOfWeek<3>, TaskRecord>("Wednesday"),
                    Column<kOfWeek<4>, TaskRecord>("Thursday"), Column<kOfWeek<5>, TaskRecord>("Friday"),
                    Column<kOfWeek<6>, TaskRecord>("Saturday")};
}

// The columns of all fields of a table.
template <const auto& kFields, auto kIn, class Record = TaskRecord>
constexpr auto Columns() {
  return []<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
    return std::tuple_cat(
        ColumnsOf<kIn, std::get<kIndex>(kFields).field, Record>(std::get<kIndex>(kFields).name)...);
  }
  (std::make_index_sequence<std::tuple_size_v<std::remove_cvref_t<decltype(kFields)>>>());
}

template <class... Parts>
constexpr auto Together(const Parts&... parts) {
  return std::apply([](auto... column) { return std::array{column...}; }, std::tuple_cat(parts...));
}

void BindStartDate(Statement& statement, int parameter, const TaskRecord& task) {
  if (!task.schedule_start) return statement.BindNull(parameter);
  statement.BindText(parameter, IsoDate(Storable(*task.schedule_start)));
}

bool ReadStartDate(TaskRecord& task, const Statement& row, int column) {
  if (IsNull(row, column)) return true;
  task.schedule_start = ParseIsoDate(row.Text(column));
  return task.schedule_start.has_value();
}

void BindPermissions(Statement& statement, int parameter, const TaskRecord& task) {
  if (!task.permissions) return statement.BindNull(parameter);
  statement.BindText(parameter, EncodePermissions(*task.permissions));
}

bool ReadPermissions(TaskRecord& task, const Statement& row, int column) {
  if (IsNull(row, column)) return true;
  task.permissions = DecodePermissions(row.Text(column));
  return task.permissions.has_value();
}

// The column PatternKind contains a pattern's position in kPatternClasses, NULL for no pattern.
void BindPatternKind(Statement& statement, int parameter, const TaskRecord& task) {
  const auto* found = ClassOf(task.recurrence->pattern);
  if (found == kPatternClasses.end()) return statement.BindNull(parameter);
  statement.BindInteger(parameter, found - kPatternClasses.begin());
}

bool ReadPatternKind(TaskRecord& task, const Statement& row, int column) {
  std::size_t kind = 0;
  const bool is_null = IsNull(row, column);
  if (!is_null && (!ReadInteger(kind, row, column) || kind >= kPatternClasses.size())) return false;
  task.recurrence->pattern = is_null ? PatternRecord() : kPatternClasses.at(kind).second;
  return true;
}

constexpr auto kTaskColumns = Together(
    Columns<kTaskFields, kInRecord>(), ColumnsOf<kInRecord, &TaskRecord::modified>("Modified"),
    ColumnsOf<kInRecord, &TaskRecord::saved_by>("SavedBy"), ColumnsOf<kInRecord, &TaskRecord::held>("Held"),
    ColumnsOf<kInRecord, &TaskRecord::categories>("Category"),
    std::array{TaskColumn{"Permissions", BindPermissions, ReadPermissions}});

constexpr auto kScheduleColumns =
    Together(std::array{TaskColumn{"StartDate", BindStartDate, ReadStartDate}},
             Columns<kRecurrenceFields, kInRecurrence>(),
             std::array{TaskColumn{"PatternKind", BindPatternKind, ReadPatternKind}},
             Columns<kPatternFields, kInPattern>());

constexpr auto kActionColumns =
    Together(Columns<kActionFields, kInRecord, ActionRecord>(),
             ColumnsOf<kInRecord, &ActionRecord::settings, ActionRecord>("Settings"));

}  // namespace

std::span<const TaskColumn> TaskColumns() {
  return kTaskColumns;
}

std::span<const TaskColumn> ScheduleColumns() {
  return kScheduleColumns;
}

std::span<const ActionColumn> ActionColumns() {
  return kActionColumns;
}

}  // namespace plovix
