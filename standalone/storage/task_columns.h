// The columns that hold a task's fields, one row here for each. Used by the storage, which makes its
// statements from them.
#pragma once

#include <plovix/standalone/model/task_record.h>

#include <QByteArray>
#include <QVariant>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace plovix {

struct TaskColumn {
  std::string_view name;
  bool is_text;  // else it holds an integer
  // What is to be stored: not valid, NULL in the file, where the task has no such value. Fails with 6 on a
  // date outside the years 0 to 9999.
  QVariant (*value)(const TaskRecord& task);
  // Takes what is stored; false when it does not fit.
  bool (*read)(TaskRecord& task, const QVariant& value);
};

// Of VeloAutoTasks: all but Id and Version, which the storage gives itself.
[[nodiscard]] std::span<const TaskColumn> TaskColumns();
// Of VeloAutoTaskSchedules: all but TaskId. To be read in this order, into a task that has a recurrence:
// the kind of the pattern decides which of the columns behind it hold a value, all others are NULL.
[[nodiscard]] std::span<const TaskColumn> ScheduleColumns();

// Texts travel as bytes, bound as CAST(? AS TEXT) and read as CAST(column AS BLOB): the file then holds
// ordinary text, and bytes that are no UTF-8, NUL bytes and byte order marks come back as they went in.
[[nodiscard]] QVariant TextValue(std::string_view text);
[[nodiscard]] std::string TextOf(const QVariant& value);
// What stands in a statement for a text that is bound, or read from `column`.
inline constexpr std::string_view kTextParameter = "CAST(? AS TEXT)";
[[nodiscard]] std::string TextColumn(std::string_view column);

// False when `value` is no integer or does not fit; `number` is then as it was.
template <std::integral Number>
[[nodiscard]] bool ReadInteger(Number& number, const QVariant& value) {
  bool is_integer = false;
  const qlonglong stored = value.toLongLong(&is_integer);
  if (!is_integer || !std::in_range<Number>(stored)) return false;
  number = static_cast<Number>(stored);
  return true;
}

}  // namespace plovix
