#include "iso_time.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace plovix {
namespace {

// Years outside this range would wrap around, possibly to years between 0 and 9999.
constexpr std::chrono::local_days kFirstDay{std::chrono::year::min() / 1 / 1},
    kLastDay{std::chrono::year::max() / 12 / 31};

constexpr std::string_view kMidnight = "T00:00:00";

bool HasForm(std::string_view text, std::string_view form) {
  return std::ranges::equal(text, form, [](char given, char wanted) {
    return wanted == '0' ? given >= '0' && given <= '9' : given == wanted;
  });
}

}  // namespace

std::string IsoDateTime(DateTime value) {
  using namespace std::chrono;
  value = std::clamp(value, DateTime(kFirstDay), DateTime(kLastDay));
  const auto midnight = floor<days>(value);
  const year_month_day date(midnight);
  const hh_mm_ss time(value - midnight);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()));
  return text.data();
}

std::string IsoDate(std::chrono::local_days day) {
  const std::string text = IsoDateTime(std::clamp(day, kFirstDay, kLastDay));
  return text.substr(0, text.find('T'));
}

std::optional<DateTime> ParseIsoDateTime(std::string_view text) {
  if (!HasForm(text, "0000-00-00T00:00:00")) return std::nullopt;
  const auto number = [text](std::size_t start, std::size_t length) {
    unsigned value = 0;
    std::from_chars(text.data() + start, text.data() + start + length, value);
    return value;
  };
  using namespace std::chrono;
  const year_month_day date(year{static_cast<int>(number(0, 4))}, month{number(5, 2)}, day{number(8, 2)});
  if (!date.ok() || number(11, 2) > 23 || number(14, 2) > 59 || number(17, 2) > 59) return std::nullopt;
  return local_days{date} + hours{number(11, 2)} + minutes{number(14, 2)} + seconds{number(17, 2)};
}

std::optional<std::chrono::local_days> ParseIsoDate(std::string_view text) {
  const auto midnight = ParseIsoDateTime(std::string(text).append(kMidnight));
  if (!midnight) return std::nullopt;
  return std::chrono::floor<std::chrono::days>(*midnight);
}

}  // namespace plovix
