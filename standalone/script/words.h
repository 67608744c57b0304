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

// The words of a line: blanks separate them, double quotes enclose one with \" \\ \n \t inside, and "#"
// outside quotes starts a comment. An empty line has none. Fails with a LineError.
[[nodiscard]] Words SplitLine(std::string_view line);

// A whole decimal number in the range of Integer; anything else is a LineError.
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

// "2026-01-05T08:00:00", an existing date and time; anything else is a LineError.
[[nodiscard]] DateTime DateTimeFrom(const std::string& word);
// A date and time as for DateTimeFrom, and the offset from UTC if it follows as "+01:00" or "-00:09:21";
// anything else is a LineError.
struct ClockTimeWord {
  DateTime wall;
  std::optional<std::chrono::seconds> offset;
};
[[nodiscard]] ClockTimeWord ClockTimeFrom(const std::string& word);
// "2026-01-05", or that day's midnight as a date and time; anything else is a LineError.
[[nodiscard]] std::chrono::local_days DateFrom(const std::string& word);

}  // namespace plovix::script
