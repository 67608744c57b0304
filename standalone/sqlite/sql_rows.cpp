#include "sql_rows.h"

#include <plovix/standalone/query/sql_tokens.h>

namespace plovix {
namespace {

Statement PrepareGuarded(Connection& connection, std::string_view sql) {
  connection.Guard([](std::string_view table, std::string_view) { return !table.starts_with("sqlite_"); });
  try {
    return connection.Prepare(sql);
  } catch (const SqlFailure& failure) {
    if (StatementCount(sql) == 1 && !failure.Refused()) throw;
  }
  connection.Refuse(failure_number::kInvalidCall, "rows can only be read from a single SELECT statement");
}

}  // namespace

SqlRows::SqlRows(const std::string& path, std::chrono::milliseconds patience, std::string_view what,
                 std::string_view sql)
    : connection_(path, patience, Access::kReadOnly, what), statement_(PrepareGuarded(connection_, sql)) {}

bool SqlRows::Next() {
  if (!at_end_) at_end_ = !statement_.Step();
  return !at_end_;
}

std::size_t SqlRows::Columns() const {
  return static_cast<std::size_t>(statement_.Columns());
}

std::string_view SqlRows::Name(std::size_t column) const {
  return statement_.Name(static_cast<int>(column));
}

std::string_view SqlRows::Text(std::size_t column) const {
  return statement_.Text(static_cast<int>(column));
}

}  // namespace plovix
