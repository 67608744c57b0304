// Numeric text against the C library's doubles and against rounding by the schoolbook. The first byte chooses
// the separator.
#include <plovix/framework/numeric_text.h>
#include <plovix/framework/text_rules.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "fuzzer.h"

namespace plovix::fuzz {
namespace {

// With a point for the separator; empty where a character has no business in a number.
std::string Plain(std::string_view text, std::string_view separator) {
  std::string plain;
  for (text = Trimmed(text); !text.empty();) {
    const bool separates = !separator.empty() && text.starts_with(separator);
    if (!separates && std::string_view("0123456789+-eE").find(text.front()) == text.npos) return {};
    plain += separates ? '.' : text.front();
    text.remove_prefix(separates ? separator.size() : 1);
  }
  return plain;
}

// Moves the point through the digits and looks at what stands behind it; nothing beyond 32 bits.
std::optional<std::int32_t> Rounded(const std::string& plain) {
  constexpr std::size_t kMostDigits = 10;
  const std::size_t exponent = std::min(plain.find_first_of("eE"), plain.size());
  std::string digits = plain.substr(0, exponent);
  std::erase_if(digits, [](char c) { return c == '-' || c == '+'; });
  auto point = static_cast<long>(std::min(digits.find('.'), digits.size()));
  std::erase(digits, '.');
  if (exponent < plain.size())  // no input is as long as the limits
    point += std::clamp(std::strtol(&plain[exponent + 1], nullptr, 10), -10'000L, 10'000L);
  if (point < 0) digits.insert(0, static_cast<std::size_t>(-point), '0');
  const auto whole_digits = static_cast<std::size_t>(std::max(point, 0L));
  digits.resize(std::max(digits.size(), whole_digits), '0');
  std::string whole = digits.substr(0, whole_digits), fraction = digits.substr(whole_digits);
  whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size()));
  fraction.erase(fraction.find_last_not_of('0') + 1);
  if (whole.size() > kMostDigits) return std::nullopt;
  std::int64_t value = std::strtoll(whole.c_str(), nullptr, 10);
  if (fraction > "5" || (fraction == "5" && value % 2 != 0)) ++value;
  if (plain.starts_with('-')) value = -value;
  const auto fits = static_cast<std::int32_t>(value);
  return value == fits ? std::optional(fits) : std::nullopt;
}

}  // namespace

void Try(std::string_view input) {
  constexpr std::array<std::string_view, 4> kSeparators{".", ",", "\u066b", ""};
  if (input.empty()) return;
  const std::string_view separator = kSeparators.at(static_cast<std::uint8_t>(input[0]) % kSeparators.size());
  const auto number = NumericText::Parse(input.substr(1), separator);
  const std::string plain = Plain(input.substr(1), separator);
  char* end = nullptr;
  const double value = std::strtod(plain.c_str(), &end);
  Require(number.has_value() ==
          (!plain.empty() && end == plain.c_str() + plain.size() && std::isfinite(value)));
  if (!number) return;
  Require(number->Value() == value && number->IsGreaterThan(0) == (value > 0));
  const auto rounded = Rounded(plain);
  try {
    Require(number->ToInt32() == rounded);
  } catch (const Failure& failure) {
    Require(failure.Number() == failure_number::kOverflow && !rounded);
  }
}

}  // namespace plovix::fuzz
