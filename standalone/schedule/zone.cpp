#include "zone.h"

#include <QTimeZone>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>
#include <string_view>

namespace plovix {
namespace {

using std::chrono::sys_seconds;

// The system's zone database; TZ may contain paths in it.
constexpr std::string_view kZoneDirectory = "/usr/share/zoneinfo/";
// A link to the file of the system's zone, or a copy of it.
constexpr const char* kSystemZone = "/etc/localtime";

// QTimeZone accepts rules and offsets as names, too, and directories as files.
bool IsInDatabase(const std::string& name) {
  std::error_code error;
  return std::filesystem::is_regular_file(std::string(kZoneDirectory) + name, error);
}

// Corrects where QTimeZone differs from C libraries. It treats "" as the system's zone and any word as a zone
// without an offset. It refuses "GMT-3" and treats "UTC-3" as an offset, which has the opposite sign, so both
// are requested as "utc". It refuses rules without dates, which mean those of the United States.
QTimeZone ZoneOfRule(std::string rule) {
  if (rule.find_first_of("0123456789") == std::string::npos) return {};
  if (rule.starts_with("UTC") || rule.starts_with("GMT")) rule.replace(0, 3, "utc");
  QTimeZone zone(QByteArray::fromStdString(rule));
  return zone.isValid() ? zone : QTimeZone(QByteArray::fromStdString(rule + ",M3.2.0,M11.1.0"));
}

QTimeZone ZoneOf(const std::string& name) {
  if (name == "UTC") return QTimeZone::utc();
  return IsInDatabase(name) ? QTimeZone(QByteArray::fromStdString(name)) : ZoneOfRule(name);
}

std::string NameOfVariable(std::string value) {
  if (value.starts_with(':')) value.erase(0, 1);
  std::error_code error;
  if (value.starts_with('/')) value = std::filesystem::canonical(value, error);
  if (value == kSystemZone) return QTimeZone::systemTimeZoneId().toStdString();  // a copy, not a link
  if (value.starts_with(kZoneDirectory)) value.erase(0, kZoneDirectory.size());
  return value;
}

}  // namespace

Zone::Zone(const std::string& name, const QTimeZone& zone)
    : data_(std::make_shared<const Data>(Data{name, ZonePeriods(zone)})) {}

Zone Zone::Local() {
  const char* variable = std::getenv("TZ");
  const auto zone = Named(NameOfVariable(variable != nullptr ? variable : kSystemZone));
  return zone ? *zone : Zone("UTC", QTimeZone::utc());
}

std::optional<Zone> Zone::Named(const std::string& name) {
  static std::mutex one_at_a_time;
  static std::map<std::string, Zone> made;
  const std::lock_guard lock(one_at_a_time);
  if (const auto known = made.find(name); known != made.end()) return known->second;
  const QTimeZone zone = ZoneOf(name);
  if (!zone.isValid()) return std::nullopt;
  return made.emplace(name, Zone(name, zone)).first->second;
}

// Starts at the earliest period that can matter. The first period with the wall time gives the first instant
// of a repeated time. If a period ends before the wall time and the next one begins after it, the time is in
// the gap between them.
Zone::Moment Zone::At(DateTime wall) const {
  wall = std::clamp(wall, kFirstSecond, kLastSecond);
  const sys_seconds as_utc{wall.time_since_epoch()};
  ZonePeriod period = PeriodAt(as_utc - kMostOffset);
  while (as_utc - period.offset >= period.end) period = PeriodAt(period.end);
  const bool shifted = as_utc - period.offset < period.begin;
  const sys_seconds at = as_utc - (shifted ? period.before : period.offset);
  return {at, period.offset, std::string(period.abbreviation), shifted,
          DateTime{(at + period.offset).time_since_epoch()}};
}

DateTime Zone::WallAt(sys_seconds at) const {
  at = std::clamp(at, sys_seconds{kFirstSecond.time_since_epoch()},
                  sys_seconds{kLastSecond.time_since_epoch()});
  return DateTime{(at + PeriodAt(at).offset).time_since_epoch()};
}

}  // namespace plovix
