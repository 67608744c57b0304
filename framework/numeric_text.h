// Numbers as a user types them: what the pages with numeric fields accept, and how that becomes an integer.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace plovix {

// The number in a numeric text. It takes the same few bytes however long the text is.
class NumericText {
 public:
  // Accepts surrounding blanks, one leading sign, digits with at most one `separator` among them, an optional
  // exponent ("e" or "E", an optional sign, digits) and nothing else: no thousands separators, currency, inf
  // or nan. Nothing for any other text, and for a number outside the range of a double.
  [[nodiscard]] static std::optional<NumericText> Parse(std::string_view text,
                                                        std::string_view separator = ".");

  // The nearest double; 0 for a number smaller than every double.
  [[nodiscard]] double Value() const noexcept { return value_; }
  [[nodiscard]] bool IsGreaterThan(std::int32_t bound) const noexcept { return value_ > bound; }
  // Rounded in decimal digits, halves to the even integer; fails with 6 if the result does not fit.
  [[nodiscard]] std::int32_t ToInt32() const;

 private:
  NumericText(double value, std::optional<std::int32_t> integer) : value_(value), integer_(integer) {}

  double value_;
  std::optional<std::int32_t> integer_;  // nothing: out of range
};

}  // namespace plovix
