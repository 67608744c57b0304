/// @file
/// Compares names of data objects and fields as the database does: there, two columns may differ only in the
/// case of an "É". Names that people give to the host's own things are compared by FoldCase.
#pragma once

#include <algorithm>
#include <string_view>

#include "requirements.h"

namespace plovix {

/// Lower case for the letters A to Z only.
[[nodiscard]] constexpr char LowerAscii(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Equality, ignoring the case of A to Z.
[[nodiscard]] constexpr bool SameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, LowerAscii, LowerAscii);
}

}  // namespace plovix
