// A table's columns as a list: for each, its name and how the value of a record gets into it and back. The
// statements on a table are made from its list. Used by the storages.
#pragma once

#include <plovix/standalone/sqlite/statement.h>

#include <concepts>
#include <cstdint>
#include <string>
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

// False if the value is not an integer or does not fit; `number` is then unchanged.
template <std::integral Number>
[[nodiscard]] bool ReadInteger(Number& number, const Statement& row, int column) {
  const std::int64_t stored = row.Integer(column);
  if (row.Type(column) != ColumnType::kInteger || !std::in_range<Number>(stored)) return false;
  number = static_cast<Number>(stored);
  return true;
}

// "SELECT first, columns FROM rest".
template <class Columns>
[[nodiscard]] std::string SelectColumns(std::string first, const Columns& columns, std::string_view rest) {
  for (const auto& column : columns) first.append(", ").append(column.name);
  return "SELECT " + first + " FROM " + std::string(rest);
}

// "into (first, columns) VALUES (values, ?...)".
template <class Columns>
[[nodiscard]] std::string InsertColumns(std::string_view into, std::string first, std::string values,
                                        const Columns& columns) {
  for (const auto& column : columns) {
    first.append(", ").append(column.name);
    values += ", ?";
  }
  return std::string(into) + " (" + first + ") VALUES (" + values + ")";
}

// "UPDATE table SET first, columns = ? WHERE where".
template <class Columns>
[[nodiscard]] std::string UpdateColumns(std::string_view table, std::string first, const Columns& columns,
                                        std::string_view where) {
  for (const auto& column : columns)
    first.append(first.empty() ? "" : ", ").append(column.name).append(" = ?");
  return "UPDATE " + std::string(table) + " SET " + first + " WHERE " + std::string(where);
}

// Binds the columns' values from `parameter` on; gives back the number of the next one.
template <class Columns, class Record>
int BindColumns(Statement& statement, int parameter, const Columns& columns, const Record& record) {
  for (const auto& column : columns) column.bind(statement, parameter++, record);
  return parameter;
}

// Reads all that can be read, from column `index` on; returns the name of the first unreadable value, or an
// empty name.
template <class Columns, class Record>
[[nodiscard]] std::string_view ReadColumns(Record& record, const Columns& columns, const Statement& row,
                                           int index) {
  std::string_view unreadable;
  for (const auto& column : columns) {
    if (!column.read(record, row, index++) && unreadable.empty()) unreadable = column.name;
  }
  return unreadable;
}

}  // namespace plovix
