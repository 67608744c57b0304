/// @file
/// UTF-8 helpers shared by the controls, their surfaces and the host.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "requirements.h"

namespace plovix {

/// Number of characters (code points); a stray continuation byte does not count.
[[nodiscard]] inline int CharacterCount(std::string_view utf8) {
  int count = 0;
  for (const char byte : utf8) {
    if ((static_cast<unsigned char>(byte) & 0xC0U) != 0x80U) ++count;
  }
  return count;
}

/// The number of bytes of the well-formed character at the start of `text`; 0 if there is none.
[[nodiscard]] std::size_t CharacterBytes(std::string_view text) noexcept;

/// The text for a message: always valid UTF-8. A byte that is not part of a well-formed character, and a
/// control character, becomes U+FFFD.
[[nodiscard]] std::string Readable(std::string_view text);
/// The same in quotation marks.
[[nodiscard]] std::string Quoted(std::string_view text);

}  // namespace plovix
