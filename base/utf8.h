/// @file
/// UTF-8 helpers shared by the controls, their surfaces and the host.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "requirements.h"

namespace plovix {

/// Whether a character may begin with the byte: it continues none.
[[nodiscard]] constexpr bool BeginsCharacter(char byte) noexcept {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

/// Number of characters (code points); a stray continuation byte does not count.
[[nodiscard]] inline int CharacterCount(std::string_view utf8) {
  int count = 0;
  for (const char byte : utf8) count += BeginsCharacter(byte) ? 1 : 0;
  return count;
}

/// The first `count` characters, or all that there are.
[[nodiscard]] std::string_view FirstCharacters(std::string_view utf8, int count) noexcept;
/// As much of the beginning as `most` bytes hold without cutting a character in two.
[[nodiscard]] std::string_view FirstBytes(std::string_view utf8, std::size_t most) noexcept;
/// The same, with an ellipsis behind it where something was left out.
[[nodiscard]] std::string Shortened(std::string_view utf8, std::size_t most);

/// The number of bytes of the well-formed character at the start of `text`; 0 if there is none.
[[nodiscard]] std::size_t CharacterBytes(std::string_view text) noexcept;

/// The text for a message: always valid UTF-8. A byte that is not part of a well-formed character, and a
/// control character, becomes U+FFFD.
[[nodiscard]] std::string Readable(std::string_view text);
/// The same in quotation marks.
[[nodiscard]] std::string Quoted(std::string_view text);

}  // namespace plovix
