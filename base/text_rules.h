/// @file
/// Rules for text that a user typed, shared by the pages' checks.
#pragma once

#include <string_view>

namespace plovix {

/// `text` without the blanks (space, tab, line ends) at both ends.
[[nodiscard]] constexpr std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace plovix
