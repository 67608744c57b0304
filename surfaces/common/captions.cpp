#include "captions.h"

#include <plovix/base/utf8.h>

#include <algorithm>
#include <cwctype>

namespace plovix::surface {
namespace {

constexpr unsigned kAsciiEnd = 0x80;

// The first character of `text`; 0 where there is no well-formed one.
char32_t First(std::string_view text) {
  const std::size_t length = CharacterBytes(text);
  if (length == 0) return 0;
  const auto first = static_cast<unsigned char>(text[0]);
  char32_t character = length == 1 ? first : first & (0x7FU >> length);
  for (const char byte : text.substr(1, length - 1))
    character = (character << 6U) | (static_cast<unsigned char>(byte) & 0x3FU);
  return character;
}

void Append(std::string& text, char32_t character) {
  if (character < kAsciiEnd) {
    text += static_cast<char>(character);
    return;
  }
  const unsigned follow = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;  // bytes behind the first
  const char32_t lead = (0xFF00U >> (follow + 1)) & 0xFFU;                      // C0, E0, F0
  text += static_cast<char>(lead | (character >> (6U * follow)));
  for (unsigned left = follow; left-- > 0;)
    text += static_cast<char>(kAsciiEnd | ((character >> (6U * left)) & 0x3FU));
}

bool IsLetterOrDigit(std::string_view text, const Unicode& unicode) {
  const char32_t character = First(text);
  if (character >= kAsciiEnd) return unicode.is_letter_or_digit(character);
  const char32_t lower = character | 0x20U;
  return (lower >= 'a' && lower <= 'z') || (character >= '0' && character <= '9');
}

}  // namespace

Unicode::Unicode()
    : is_letter_or_digit([](char32_t character) { return std::iswalnum(character) != 0; }),
      fold([](char32_t character) { return static_cast<char32_t>(std::towlower(character)); }) {}

Caption ReadCaption(std::string_view caption, const Unicode& unicode) {
  Caption read;
  for (std::size_t at = 0; at < caption.size(); ++at) {
    const std::string_view next = caption.substr(at + 1);
    const bool marks = caption[at] == '&' && !next.starts_with('&') &&
                       read.mnemonic == std::string_view::npos && IsLetterOrDigit(next, unicode);
    if (marks) {
      read.mnemonic = read.text.size();
    } else {
      read.text += caption[at];
      if (caption[at] == '&' && next.starts_with('&')) ++at;
    }
  }
  return read;
}

bool HasLetters(std::string_view utf8, const Unicode& unicode) {
  while (!utf8.empty()) {
    if (IsLetterOrDigit(utf8, unicode)) return true;
    utf8.remove_prefix(std::max<std::size_t>(CharacterBytes(utf8), 1));
  }
  return false;
}

std::string Folded(std::string_view utf8, const Unicode& unicode) {
  std::string folded;
  folded.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::size_t length = CharacterBytes(utf8);
    const char first = utf8[0];
    if (length > 1) {
      Append(folded, unicode.fold(First(utf8)));
    } else {
      folded += first >= 'A' && first <= 'Z' ? static_cast<char>(first - 'A' + 'a') : first;
    }
    utf8.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return folded;
}

}  // namespace plovix::surface
