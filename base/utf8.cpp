#include "utf8.h"

namespace plovix {
namespace {

unsigned char Byte(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

// The range of the second byte excludes overlong forms, surrogates and everything above U+10FFFF.
bool GoodSecond(unsigned char first, unsigned char second) {
  const int low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const int high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  return second >= low && second <= high;
}

}  // namespace

std::string_view FirstCharacters(std::string_view utf8, int count) noexcept {
  std::size_t end = 0;
  for (; count > 0 && end < utf8.size(); --count) {
    do {
      ++end;
    } while (end < utf8.size() && !BeginsCharacter(utf8[end]));
  }
  return utf8.substr(0, end);
}

std::string_view FirstBytes(std::string_view utf8, std::size_t most) noexcept {
  if (utf8.size() <= most) return utf8;
  while (most > 0 && !BeginsCharacter(utf8[most])) --most;
  return utf8.substr(0, most);
}

std::string Shortened(std::string_view utf8, std::size_t most) {
  const std::string_view kept = FirstBytes(utf8, most);
  return std::string(kept) + (kept.size() < utf8.size() ? "…" : "");
}

std::size_t CharacterBytes(std::string_view text) noexcept {
  if (text.empty()) return 0;
  const unsigned char first = Byte(text, 0);
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (text.size() < length || !GoodSecond(first, Byte(text, 1))) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (BeginsCharacter(text[i])) return 0;
  }
  return length;
}

std::string Readable(std::string_view text) {
  constexpr std::string_view kReplacement = "\uFFFD";
  std::string readable;
  while (!text.empty()) {
    const std::size_t length = CharacterBytes(text);
    const bool shown = length > 1 || (length == 1 && text[0] >= ' ' && text[0] != '\x7F');
    readable += shown ? text.substr(0, length) : kReplacement;
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return readable;
}

std::string Quoted(std::string_view text) {
  return '"' + Readable(text) + '"';
}

}  // namespace plovix
