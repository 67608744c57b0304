/// @file
/// A pass over the rows of an SQL statement. Created by the storage; used to count or list more rows than
/// should be in memory at once.
#pragma once

#include <plovix/base/requirements.h>

#include <cstddef>
#include <string_view>

namespace plovix {

/// Forward and read-only. Every member fails with a Failure whose description tells a person what happened.
class RowCursor {
 public:
  virtual ~RowCursor() = default;
  /// Goes to the first or next row; false from the end on.
  [[nodiscard]] virtual bool Next() = 0;
  /// The number of columns; column numbers below start at 0 and must exist.
  [[nodiscard]] virtual std::size_t Columns() const = 0;
  /// The column's name in the statement.
  [[nodiscard]] virtual std::string_view Name(std::size_t column) const = 0;
  /// A value of the current row: any bytes, a number as SQL writes it, empty for NULL. Valid until Next.
  [[nodiscard]] virtual std::string_view Text(std::size_t column) const = 0;
};

}  // namespace plovix
