#include "words.h"

#include <plovix/standalone/text/iso_time.h>

#include <algorithm>
#include <array>
#include <utility>

namespace plovix::script {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr auto kEscapes =
    std::to_array<std::pair<char, char>>({{'"', '"'}, {'\\', '\\'}, {'n', '\n'}, {'t', '\t'}});

// Takes a quoted word, including its opening quote, from the front of `rest`.
std::string TakeQuoted(std::string_view& rest) {
  std::string word;
  for (std::size_t i = 1; i < rest.size(); ++i) {
    if (rest[i] == '"') {
      rest.remove_prefix(i + 1);
      return word;
    }
    if (rest[i] != '\\') {
      word += rest[i];
      continue;
    }
    if (++i == rest.size()) break;
    const auto* escape = std::ranges::find(kEscapes, rest[i], &std::pair<char, char>::first);
    if (escape == kEscapes.end()) throw LineError(std::string("unknown escape \\") + rest[i]);
    word += escape->second;
  }
  throw LineError("a double quote is not closed");
}

std::string TakeBare(std::string_view& rest) {
  const std::size_t end = std::min(rest.find_first_of(" \t\r#\""), rest.size());
  std::string word(rest.substr(0, end));
  rest.remove_prefix(end);
  return word;
}

}  // namespace

Words SplitLine(std::string_view line) {
  Words words;
  while (true) {
    const std::size_t blanks = std::min(line.find_first_not_of(kBlanks), line.size());
    const bool parted = blanks > 0 || words.empty();
    line.remove_prefix(blanks);
    if (line.empty() || line.front() == '#') return words;
    if (!parted) throw LineError("double quotes must hold a whole word");
    words.push_back(line.front() == '"' ? TakeQuoted(line) : TakeBare(line));
  }
}

bool IsInteger(const std::string& word) {
  const std::string_view digits = std::string_view(word).substr(word.starts_with('-') ? 1 : 0);
  return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

bool SwitchFrom(const std::string& word) {
  if (word == "on") return true;
  if (word != "off") throw LineError("\"" + word + "\" is neither on nor off");
  return false;
}

DateTime DateTimeFrom(const std::string& word) {
  const auto value = ParseIsoDateTime(word);
  if (!value) throw LineError("\"" + word + "\" is not a date and time such as 2026-01-05T08:00:00");
  return *value;
}

ClockTimeWord ClockTimeFrom(const std::string& word) {
  constexpr std::size_t kSign = 19;  // after the date and time
  if (word.size() <= kSign || (word[kSign] != '+' && word[kSign] != '-')) return {DateTimeFrom(word), {}};
  std::string offset = "1970-01-01T" + word.substr(kSign + 1);
  if (word.size() == kSign + 6) offset += ":00";
  const auto value = ParseIsoDateTime(offset);
  if (!value) throw LineError("\"" + word + "\" does not end in an offset such as +01:00");
  const std::chrono::seconds east = value->time_since_epoch();
  return {DateTimeFrom(word.substr(0, kSign)), word[kSign] == '-' ? -east : east};
}

std::chrono::local_days DateFrom(const std::string& word) {
  constexpr std::string_view kMidnight = "T00:00:00";
  const std::string_view day =
      std::string_view(word).substr(0, word.size() - (word.ends_with(kMidnight) ? kMidnight.size() : 0));
  const auto value = ParseIsoDate(day);
  if (!value) throw LineError("\"" + word + "\" is not a date such as 2026-01-05");
  return *value;
}

}  // namespace plovix::script
