#include "json_text.h"

#include <charconv>

namespace plovix {
namespace {

constexpr std::string_view kEscape = "\xF4\x8F\xBF\xBF";

unsigned char Byte(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

// The second byte's range excludes overlong forms, surrogates and everything above U+10FFFF.
bool GoodSecond(unsigned char first, unsigned char second) {
  const int low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const int high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  return second >= low && second <= high;
}

// Bytes of the well-formed character at the start of `text`, which is not empty; 0 when there is none.
std::size_t CharacterBytes(std::string_view text) {
  const unsigned char first = Byte(text, 0);
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (text.size() < length || !GoodSecond(first, Byte(text, 1))) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if ((Byte(text, i) & 0xC0) != 0x80) return 0;
  }
  return length;
}

}  // namespace

std::string ToJsonText(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = CharacterBytes(text);
    if (length == 0) {
      const unsigned char byte = Byte(text, 0);
      result += kEscape;
      result += kDigits[byte >> 4];
      result += kDigits[byte & 0x0F];
      text.remove_prefix(1);
      continue;
    }
    if (text.starts_with(kEscape)) result += kEscape;
    result += text.substr(0, length);
    text.remove_prefix(length);
  }
  return result;
}

std::string FromJsonText(std::string_view json_text) {
  std::string result;
  while (true) {
    const std::size_t escape = json_text.find(kEscape);
    result += json_text.substr(0, escape);
    if (escape == std::string_view::npos) return result;
    json_text.remove_prefix(escape + kEscape.size());
    const std::string_view digits = json_text.substr(0, 2);
    unsigned byte = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (error == std::errc{} && end == digits.data() + 2) {
      result += static_cast<char>(byte);
      json_text.remove_prefix(2);
    } else {
      result += kEscape;
      if (json_text.starts_with(kEscape)) json_text.remove_prefix(kEscape.size());
    }
  }
}

bool IsPlainJsonText(std::string_view text) {
  while (!text.empty()) {
    const unsigned char first = Byte(text, 0);
    const bool is_ascii = first < 0x80;
    if (is_ascii && (first < ' ' || first == '"' || first == '\\')) return false;
    const std::size_t length = is_ascii ? 1 : CharacterBytes(text);
    if (length == 0 || text.starts_with(kEscape)) return false;
    text.remove_prefix(length);
  }
  return true;
}

bool NestsDeeper(std::string_view json, std::size_t levels) {
  std::size_t open = 0;
  bool in_text = false;
  for (std::size_t i = 0; i < json.size(); ++i) {
    const char character = json[i];
    if (character == '"') {
      in_text = !in_text;
    } else if (in_text) {
      if (character == '\\') ++i;  // whatever it escapes ends no text
    } else if (character == '[' || character == '{') {
      if (++open > levels) return true;
    } else if ((character == ']' || character == '}') && open > 0) {
      --open;
    }
  }
  return false;
}

}  // namespace plovix
