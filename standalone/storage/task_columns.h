// The columns that hold a task's fields, most of them under the fields' documented names. Used by the
// storage, which makes its statements from them.
#pragma once

#include <plovix/standalone/sqlite/statement.h>
#include <plovix/standalone/tasks/task_record.h>

#include <concepts>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace plovix {

struct TaskColumn {
  std::string_view name;
  // Binds what is to be stored: NULL where the task has no such value. Fails with 6 on a date outside the
  // years 0 to 9999.
  void (*bind)(Statement& statement, int parameter, const TaskRecord& task);
  // Takes what is stored; false when it does not fit.
  bool (*read)(TaskRecord& task, const Statement& row, int column);
};

// Of VeloAutoTasks: all but Id and Version, which the storage gives itself.
[[nodiscard]] std::span<const TaskColumn> TaskColumns();
// Of VeloAutoTaskSchedules: all but TaskId. To be read in this order, into a task that has a recurrence:
// the kind of the pattern decides which of the columns behind it hold a value, all others are NULL.
[[nodiscard]] std::span<const TaskColumn> ScheduleColumns();

// False when the value is no integer or does not fit; `number` is then as it was.
template <std::integral Number>
[[nodiscard]] bool ReadInteger(Number& number, const Statement& row, int column) {
  const std::int64_t stored = row.Integer(column);
  if (row.Type(column) != ColumnType::kInteger || !std::in_range<Number>(stored)) return false;
  number = static_cast<Number>(stored);
  return true;
}

}  // namespace plovix
