#include "json_text.h"

#include <plovix/base/utf8.h>

#include <charconv>

namespace plovix {
namespace {

constexpr std::string_view kEscape = "\xF4\x8F\xBF\xBF";

unsigned char Byte(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
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
      if (character == '\\') ++i;  // an escaped character never ends the text
    } else if (character == '[' || character == '{') {
      if (++open > levels) return true;
    } else if ((character == ']' || character == '}') && open > 0) {
      --open;
    }
  }
  return false;
}

bool IsParsableJson(std::string_view text) {
  constexpr std::size_t kDeepest = 64;
  return text.find('\0') == std::string_view::npos && !NestsDeeper(text, kDeepest);
}

}  // namespace plovix
