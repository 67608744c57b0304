/// @file
/// Names of data objects and fields are compared as the database does. Names that people give to things of
/// the host's own are compared by FoldCase: in the database two columns may differ in nothing but the case of
/// an "É".
#pragma once

#include <algorithm>
#include <string_view>

#include "requirements.h"

namespace plovix {

/// Of the letters A to Z.
[[nodiscard]] constexpr char LowerAscii(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Without regard to the case of A to Z.
[[nodiscard]] constexpr bool SameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, LowerAscii, LowerAscii);
}

}  // namespace plovix
