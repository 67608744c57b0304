#include "field_value.h"

#include <plovix/base/same_name.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace plovix {
namespace {

std::string DigitsOf(double value) {
  constexpr std::size_t kLongestReal = 32;  // "-2.2250738585072014e-308" has 24
  std::array<char, kLongestReal> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  std::string text(digits.data(), end);
  const bool is_plain = text.find_first_not_of("-0123456789") == std::string::npos;
  return is_plain ? text + ".0" : text;
}

std::string HexOf(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    text += {kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
  }
  return text;
}

struct WriteAsText {
  std::string operator()(std::monostate /*null*/) const { return {}; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return DigitsOf(value); }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(const Blob& value) const { return HexOf(value.bytes); }
};

}  // namespace

const FieldValue* FindValue(const RecordValues& record, std::string_view name) {
  const auto found =
      std::ranges::find_if(record, [name](const NamedValue& field) { return SameName(field.name, name); });
  return found == record.end() ? nullptr : &found->value;
}

std::string TextOf(const FieldValue& value) {
  return std::visit(WriteAsText{}, value);
}

std::string KeyOf(const FieldValue& value) {
  constexpr std::string_view kTypes = "nirtb";  // in the order of the variant's types
  return std::string{kTypes[value.index()], ':'} + TextOf(value);
}

}  // namespace plovix
