// The columns that hold the fields of a task and its actions, most of them under the fields' documented
// names. Used by the storage, which makes its statements from them.
#pragma once

#include <plovix/standalone/sqlite/statement.h>
#include <plovix/standalone/tasks/task_record.h>

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace plovix {

template <class Record>
struct ColumnOf {
  std::string_view name;
  // Binds what is to be stored: NULL where the record has no such value. Fails with 6 on a date outside the
  // years 0 to 9999.
  void (*bind)(Statement& statement, int parameter, const Record& record);
  // Reads the stored value; false if it does not fit.
  bool (*read)(Record& record, const Statement& row, int column);
};
using TaskColumn = ColumnOf<TaskRecord>;
using ActionColumn = ColumnOf<ActionRecord>;

// Of VeloAutoTasks: all except Id and Version, which the storage assigns.
[[nodiscard]] std::span<const TaskColumn> TaskColumns();
// Of VeloAutoTaskSchedules: all except TaskId. To be read in this order, into a task that has a recurrence:
// the kind of the pattern decides which of the following columns have a value; all others are NULL.
[[nodiscard]] std::span<const TaskColumn> ScheduleColumns();
// Of VeloAutoTaskActions: all but TaskId and Position.
[[nodiscard]] std::span<const ActionColumn> ActionColumns();

// False if the value is not an integer or does not fit; `number` is then unchanged.
template <std::integral Number>
[[nodiscard]] bool ReadInteger(Number& number, const Statement& row, int column) {
  const std::int64_t stored = row.Integer(column);
  if (row.Type(column) != ColumnType::kInteger || !std::in_range<Number>(stored)) return false;
  number = static_cast<Number>(stored);
  return true;
}

}  // namespace plovix
