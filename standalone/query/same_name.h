// How names of data objects and fields are compared. Used by the catalogue of a file and the query model.
#pragma once

#include <algorithm>
#include <string_view>

namespace plovix {

// Without regard to the case of A to Z, as in the database.
[[nodiscard]] inline bool SameName(std::string_view a, std::string_view b) {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  };
  return std::ranges::equal(a, b, {}, lower, lower);
}

}  // namespace plovix
