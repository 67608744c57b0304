/// @file
/// How texts are read: the mnemonics of captions, positions in characters, letters.
#pragma once

#include <plovix/base/requirements.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace plovix::surface {

/// What the standard library does not know of characters. Asked beyond ASCII alone. The defaults answer as
/// the C library's locale has it; a toolkit knows better.
struct Unicode {
  bool (*is_letter_or_digit)(char32_t character);  ///< may be a mnemonic
  char32_t (*fold)(char32_t character);            ///< the same for upper and lower case
  Unicode();                                       ///< With the defaults.
};

/// A caption as it is seen.
struct Caption {
  std::string text;                               ///< UTF-8, without marks
  std::size_t mnemonic = std::string_view::npos;  ///< its first byte in `text`; npos: there is none
};

/// Reads Control::Caption: "&&" is one "&", the first other "&" before a letter or digit marks the mnemonic,
/// every further one stands for itself.
[[nodiscard]] Caption ReadCaption(std::string_view caption, const Unicode& unicode = {});

/// Whether it has something to say.
[[nodiscard]] bool HasLetters(std::string_view utf8, const Unicode& unicode = {});
/// Without regard to case. What is no well-formed character stays as it is.
[[nodiscard]] std::string Folded(std::string_view utf8, const Unicode& unicode = {});

}  // namespace plovix::surface
