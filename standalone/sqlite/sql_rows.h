// The rows of one SELECT on a database file, with a separate connection: a pass neither waits for writers nor
// keeps them waiting, and is not disturbed when its owner saves meanwhile. Used by the storage.
#pragma once

#include <plovix/standalone/tasks/row_cursor.h>

#include <chrono>
#include <string>
#include <string_view>

#include "connection.h"

namespace plovix {

class SqlRows final : public RowCursor {
 public:
  // The pass sees the state of the file at the first Next. Fails as Connection does, and with 5 if `sql` is
  // not a single statement that only reads.
  SqlRows(const std::string& path, std::chrono::milliseconds patience, std::string_view what,
          std::string_view sql);

  [[nodiscard]] bool Next() override;
  [[nodiscard]] std::size_t Columns() const override;
  [[nodiscard]] std::string_view Name(std::size_t column) const override;
  [[nodiscard]] std::string_view Text(std::size_t column) const override;

 private:
  Connection connection_;
  Statement statement_;
  bool at_end_ = false;
};

}  // namespace plovix
