// The rows of one SELECT on a database file, over a connection of its own: a pass neither waits for writers
// nor keeps them waiting, and what its owner saves meanwhile does not disturb it. Used by the storage.
#pragma once

#include <plovix/standalone/tasks/row_cursor.h>

#include <chrono>
#include <string>
#include <string_view>

#include "connection.h"

namespace plovix {

class SqlRows final : public RowCursor {
 public:
  // The pass sees the file as it is at the first Next. Fails as Connection does, and with 5 when `sql` is
  // anything but a single statement that reads.
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
