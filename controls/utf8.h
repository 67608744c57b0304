/// @file
/// UTF-8 helpers shared by the controls and their surfaces.
#pragma once

#include <string_view>

namespace plovix {

/// Number of characters (code points); a stray continuation byte does not count.
[[nodiscard]] inline int CharacterCount(std::string_view utf8) {
  int count = 0;
  for (const char byte : utf8) {
    if ((static_cast<unsigned char>(byte) & 0xC0U) != 0x80U) ++count;
  }
  return count;
}

}  // namespace plovix
