// Compares days and times as text with the C library's calendar, and converts any time to text and back.
#include <plovix/standalone/text/iso_time.h>

#include <array>
#include <cstring>
#include <ctime>

#include "fuzzer.h"

namespace plovix::fuzz {
namespace {

using namespace std::chrono;

// The time by a calendar that corrects nonexistent ones; the corrected text then differs.
std::optional<DateTime> Expected(const std::string& text) {
  std::tm tm{};
  const int read = std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d", &tm.tm_year, &tm.tm_mon, &tm.tm_mday,
                               &tm.tm_hour, &tm.tm_min, &tm.tm_sec);
  if (read != 6 || tm.tm_year < 0) return std::nullopt;
  tm.tm_year -= 1900;
  tm.tm_mon -= 1;
  const DateTime moment{seconds{timegm(&tm)}};
  std::array<char, 64> again{};
  std::snprintf(again.data(), again.size(), "%04d-%02d-%02dT%02d:%02d:%02d", tm.tm_year + 1900, tm.tm_mon + 1,
                tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec);
  return text == again.data() ? std::optional(moment) : std::nullopt;
}

void ThereAndBack(DateTime moment) {
  const bool returns = moment >= local_days{year{0} / 1 / 1} && moment < local_days{year{10000} / 1 / 1};
  const local_days day = floor<days>(moment);
  Require(ParseIsoDateTime(IsoDateTime(moment)) == (returns ? std::optional(moment) : std::nullopt));
  Require(ParseIsoDate(IsoDate(day)) == (returns ? std::optional(day) : std::nullopt));
}

}  // namespace

void Try(std::string_view input) {
  const std::string text(input);
  const auto moment = ParseIsoDateTime(input);
  Require(moment == Expected(text) && (!moment || IsoDateTime(*moment) == text));
  const auto day = ParseIsoDate(input);
  Require(day == Expected(text + "T00:00:00") && (!day || IsoDate(*day) == text));

  std::int64_t number = 0;
  std::memcpy(&number, input.data(), std::min(input.size(), sizeof number));
  ThereAndBack(DateTime{seconds{number}});
  ThereAndBack(DateTime{seconds{number % 400'000'000'000}});  // within some 12,000 years of 1970
}

}  // namespace plovix::fuzz
