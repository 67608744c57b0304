// Compares numeric text with the C library's doubles. The first byte chooses the separator.
#include <plovix/base/text_rules.h>
#include <plovix/framework/numeric_text.h>

#include <array>
#include <cmath>

#include "fuzzer.h"

namespace plovix::fuzz {
namespace {

// The text with a point as separator; empty if a character does not belong in a number.
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
  // Exactly between two integers, a double may hide on which side the digits are.
  try {
    const double integer = number->ToInt32();
    Require(std::abs(integer - value) == 0.5 || integer == std::nearbyint(value));
  } catch (const Failure& failure) {
    Require(failure.Number() == failure_number::kOverflow);
    Require(value >= 2147483647.5 || value <= -2147483648.5);
  }
}

}  // namespace plovix::fuzz
