#include "words.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <optional>
#include <utility>

namespace plovix::script {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr auto kEscapes =
    std::to_array<std::pair<char, char>>({{'"', '"'}, {'\\', '\\'}, {'n', '\n'}, {'t', '\t'}});

// Takes a quoted word, its opening quote included, from the front of `rest`.
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

std::optional<DateTime> ParseDateTime(const std::string& word) {
  constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:dd";
  const auto fits = [](char form, char given) {
    return form == 'd' ? std::isdigit(static_cast<unsigned char>(given)) != 0 : form == given;
  };
  const auto number = [&](std::size_t at, std::size_t size) {
    return IntegerFrom<int>(word.substr(at, size));
  };
  if (word.size() == kForm.size() && std::ranges::equal(kForm, word, fits)) {
    using namespace std::chrono;
    const auto date = year{number(0, 4)} / number(5, 2) / number(8, 2);
    const int hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
    if (date.ok() && hour < 24 && minute < 60 && second < 60) {
      return local_days{date} + hours{hour} + minutes{minute} + seconds{second};
    }
  }
  return std::nullopt;
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
  const auto value = ParseDateTime(word);
  if (!value) throw LineError("\"" + word + "\" is not a date and time such as 2026-01-05T08:00:00");
  return *value;
}

std::string DateTimeText(DateTime value) {
  using namespace std::chrono;
  const auto day = floor<days>(value);
  const year_month_day date{day};
  const hh_mm_ss time{value - day};
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return text.data();
}

std::chrono::local_days DateFrom(const std::string& word) {
  constexpr std::string_view kMidnight = "T00:00:00";
  const auto value = ParseDateTime(word.ends_with(kMidnight) ? word : word + std::string(kMidnight));
  if (!value) throw LineError("\"" + word + "\" is not a date such as 2026-01-05");
  return std::chrono::floor<std::chrono::days>(*value);
}

std::string DateText(std::chrono::local_days day) {
  const std::string text = DateTimeText(day);
  return text.substr(0, text.find('T'));
}

}  // namespace plovix::script
