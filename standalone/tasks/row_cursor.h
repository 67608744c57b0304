/// @file
/// A pass over the rows that an SQL statement gives. Made by the storage; used by whoever counts or lists
/// more rows than should stand in memory at once.
#pragma once

#include <plovix/base/requirements.h>

#include <cstddef>
#include <string_view>

namespace plovix {

/// Forward and for reading. Every member fails with a Failure whose description tells a person what happened.
class RowCursor {
 public:
  virtual ~RowCursor() = default;
  /// Goes to the first or next row; false, from then on, when there is none left.
  [[nodiscard]] virtual bool Next() = 0;
  /// How many columns there are; below they are counted from 0 and must exist.
  [[nodiscard]] virtual std::size_t Columns() const = 0;
  /// As the statement names it.
  [[nodiscard]] virtual std::string_view Name(std::size_t column) const = 0;
  /// A value of the present row: any bytes, a number as SQL writes it, nothing for NULL. Valid until Next.
  [[nodiscard]] virtual std::string_view Text(std::size_t column) const = 0;
};

}  // namespace plovix
