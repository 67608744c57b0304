#include "sql_rows.h"

namespace plovix {

SqlRows::SqlRows(const std::string& path, std::chrono::milliseconds patience, std::string_view what,
                 std::string_view sql)
    : connection_(path, patience, Access::kReadOnly, what), statement_(connection_.Prepare(sql)) {
  if (statement_.IsReadOnly() && statement_.Columns() > 0 && !statement_.HasTail()) return;
  connection_.Refuse(failure_number::kInvalidCall, "rows can only be read from a single SELECT statement");
}

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
