// A script line as words, and words as values. Used by the runner and the commands.
#pragma once

#include <plovix/controls/kinds.h>

#include <charconv>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "line_error.h"

namespace plovix::script {

using Words = std::vector<std::string>;

// The words of a line: blanks part them, double quotes hold one with \" \\ \n \t inside, "#" outside
// quotes starts a comment. No words: the line says nothing. Fails with a LineError.
[[nodiscard]] Words SplitLine(std::string_view line);

// A whole decimal number that Integer can hold; anything else is a LineError.
template <class Integer>
[[nodiscard]] Integer IntegerFrom(const std::string& word) {
  Integer value{};
  const char* const end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, value);
  if (error == std::errc::result_out_of_range) throw LineError("the number " + word + " is out of range");
  if (error != std::errc{} || stop != end) throw LineError("\"" + word + "\" is not a whole number");
  return value;
}
[[nodiscard]] bool IsInteger(const std::string& word);

// "on" or "off"; anything else is a LineError.
[[nodiscard]] bool SwitchFrom(const std::string& word);

// "2026-01-05T08:00:00", a moment that exists; anything else is a LineError.
[[nodiscard]] DateTime DateTimeFrom(const std::string& word);
// A moment as DateTimeFrom reads it, and how far it is from UTC where that stands behind it as "+01:00" or
// "-00:09:21"; anything else is a LineError.
struct ClockTimeWord {
  DateTime wall;
  std::optional<std::chrono::seconds> offset;
};
[[nodiscard]] ClockTimeWord ClockTimeFrom(const std::string& word);
// "2026-01-05", or that day's midnight as a date and time; anything else is a LineError.
[[nodiscard]] std::chrono::local_days DateFrom(const std::string& word);

}  // namespace plovix::script
