// The columns of the table VeloAutoTasks that hold a task's own fields: one row here for each. Used by
// the storage, which makes its statements from it.
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
#include <variant>
#include <vector>

namespace plovix {

using TaskField = std::variant<std::string TaskRecord::*, bool TaskRecord::*, std::int16_t TaskRecord::*,
                               std::int32_t TaskRecord::*, DateTime TaskRecord::*,
                               std::vector<CategoryRecord> TaskRecord::*>;

struct TaskColumn {
  std::string_view name;
  TaskField field;
  // Whether the column holds text; else it holds an integer.
  [[nodiscard]] bool IsText() const;
};

// All but Id and Version, which the storage gives itself.
[[nodiscard]] std::span<const TaskColumn> TaskColumns();

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

// Fails with 6 on a date outside the years 0 to 9999.
[[nodiscard]] QVariant ColumnValue(const TaskRecord& task, const TaskColumn& column);
// False when the stored value does not fit the field; the field is then as it was.
[[nodiscard]] bool ReadColumn(TaskRecord& task, const TaskColumn& column, const QVariant& value);

}  // namespace plovix
