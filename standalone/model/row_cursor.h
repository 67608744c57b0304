// A forward pass over the rows of a query on the task file, or on what stands for one.
#pragma once

#include <cstddef>
#include <string_view>

namespace plovix {

// Every member fails with a Failure whose description tells a person what happened.
class RowCursor {
 public:
  virtual ~RowCursor() = default;
  // Goes to the next row, at first to the first one; false behind the last row.
  [[nodiscard]] virtual bool Next() = 0;
  [[nodiscard]] virtual std::size_t Columns() const = 0;
  [[nodiscard]] virtual std::string_view Name(std::size_t column) const = 0;
  // Of the current row, good until Next; a column without a value is the empty text.
  [[nodiscard]] virtual std::string_view Text(std::size_t column) const = 0;
};

}  // namespace plovix
