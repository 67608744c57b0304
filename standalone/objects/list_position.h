/// @file
/// Positions in the lists that pages count from 1.
#pragma once

#include <plovix/base/failure.h>

#include <cstddef>
#include <cstdint>

namespace plovix {

/// `index` counted from 0; fails with 9 outside 1 .. count.
[[nodiscard]] inline std::size_t ListPosition(std::int32_t index, std::size_t count) {
  if (index < 1 || static_cast<std::size_t>(index) > count) {
    throw Failure(failure_number::kSubscriptOutOfRange, "Subscript out of range");
  }
  return static_cast<std::size_t>(index) - 1;
}

}  // namespace plovix
