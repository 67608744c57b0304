#include "numeric_text.h"

#include <plovix/base/failure.h>
#include <plovix/base/text_rules.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace plovix {
namespace {

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool TakeSign(std::string_view& text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return negative;
}

// The number 0.d1d2d3... times ten to the power of `exponent`, with a first digit other than zero; no digits
// mean zero.
class Decimal {
 public:
  void Append(char digit, bool behind_separator) {
    if (count_ == 0 && digit == '0') {
      if (behind_separator) --exponent_;
      return;
    }
    if (!behind_separator) ++exponent_;
    if (count_ < kKept) {
      digits_[count_++] = digit;
    } else {
      more_ = more_ || digit != '0';
    }
  }
  void Shift(std::int64_t places) { exponent_ += places; }

  // Nothing if the number is outside the range of doubles.
  [[nodiscard]] std::optional<double> ToDouble() const;
  // Nothing if the rounded number is outside the range of 32-bit integers.
  [[nodiscard]] std::optional<std::int32_t> ToInteger(bool negative) const;

 private:
  // More digits than these never decide how a double is rounded; of the rest it only matters whether one of
  // them is not zero.
  static constexpr std::size_t kKept = 800;
  [[nodiscard]] int Digit(std::int64_t position) const {
    return position < static_cast<std::int64_t>(count_) ? digits_[static_cast<std::size_t>(position)] - '0'
                                                        : 0;
  }
  [[nodiscard]] bool AnyFrom(std::int64_t position) const {
    const auto end = digits_.begin() + static_cast<std::ptrdiff_t>(count_);
    const auto from = digits_.begin() + std::min(position, static_cast<std::int64_t>(count_));
    return more_ || std::any_of(from, end, [](char digit) { return digit != '0'; });
  }

  std::array<char, kKept> digits_{};
  std::size_t count_ = 0;
  bool more_ = false;
  std::int64_t exponent_ = 0;
};

std::optional<double> Decimal::ToDouble() const {
  constexpr std::int64_t kAboveAll = std::numeric_limits<double>::max_exponent10 + 1;
  constexpr std::int64_t kBelowAll = -400;
  if (count_ == 0 || exponent_ < kBelowAll) return 0.0;
  if (exponent_ > kAboveAll) return std::nullopt;
  std::array<char, kKept + 16> text{'0', '.'};
  char* end = std::copy_n(digits_.begin(), count_, text.begin() + 2);
  if (more_) *end++ = '1';
  *end++ = 'e';
  end = std::to_chars(end, text.end(), exponent_).ptr;
  double value = 0;
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error == std::errc{}) return value;
  return exponent_ > 0 ? std::nullopt : std::optional(0.0);
}

std::optional<std::int32_t> Decimal::ToInteger(bool negative) const {
  constexpr std::int64_t kMostDigits = std::numeric_limits<std::int32_t>::digits10 + 1;
  if (count_ == 0 || exponent_ < 0) return 0;
  if (exponent_ > kMostDigits) return std::nullopt;
  std::int64_t whole = 0;
  for (std::int64_t i = 0; i < exponent_; ++i) whole = whole * 10 + Digit(i);
  const int next = Digit(exponent_);
  if (next > 5 || (next == 5 && (AnyFrom(exponent_ + 1) || whole % 2 != 0))) ++whole;
  if (negative) whole = -whole;
  using Limits = std::numeric_limits<std::int32_t>;
  if (whole < Limits::min() || whole > Limits::max()) return std::nullopt;
  return static_cast<std::int32_t>(whole);
}

// Removes the digits and their separator from the start of `text`; false if there is no digit.
bool TakeDigits(std::string_view& text, std::string_view separator, Decimal& number) {
  bool any = false;
  bool behind_separator = false;
  while (!text.empty()) {
    if (IsDigit(text.front())) {
      any = true;
      number.Append(text.front(), behind_separator);
      text.remove_prefix(1);
    } else if (!behind_separator && !separator.empty() && text.starts_with(separator)) {
      behind_separator = true;
      text.remove_prefix(separator.size());
    } else {
      break;
    }
  }
  return any;
}

// Removes an exponent, if any, from the start of `text`; false if it has no digit.
bool TakeExponent(std::string_view& text, Decimal& number) {
  if (!text.starts_with('e') && !text.starts_with('E')) return true;
  constexpr std::int64_t kEnough = 1'000'000'000'000'000;  // exceeds every possible count of digits
  text.remove_prefix(1);
  const bool negative = TakeSign(text);
  if (text.empty() || !IsDigit(text.front())) return false;
  std::int64_t places = 0;
  for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1)) {
    places = std::min(places * 10 + (text.front() - '0'), kEnough);
  }
  number.Shift(negative ? -places : places);
  return true;
}

}  // namespace

std::optional<NumericText> NumericText::Parse(std::string_view text, std::string_view separator) {
  text = Trimmed(text);
  const bool negative = TakeSign(text);
  Decimal number;
  if (!TakeDigits(text, separator, number) || !TakeExponent(text, number) || !text.empty())
    return std::nullopt;
  const std::optional<double> magnitude = number.ToDouble();
  if (!magnitude) return std::nullopt;
  return NumericText(negative ? -*magnitude : *magnitude, number.ToInteger(negative));
}

std::int32_t NumericText::ToInt32() const {
  if (!integer_) throw Failure(failure_number::kOverflow, "Overflow");
  return *integer_;
}

}  // namespace plovix
