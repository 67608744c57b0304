#include "zone.h"

#include <QDateTime>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "calendar_range.h"

namespace plovix {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using std::chrono::sys_seconds;

// The system's zone database; TZ may contain paths in it.
constexpr std::string_view kZoneDirectory = "/usr/share/zoneinfo/";

// Before every transition in a zone's file. QTimeZone does not return if it searches for the transitions of a
// rule near the year 0, so this instant replaces earlier ones.
constexpr sys_seconds kFirstAsked{std::chrono::sys_days{std::chrono::year{1800} / 1 / 1}};

QDateTime ToQt(sys_seconds at) {
  return QDateTime::fromSecsSinceEpoch(at.time_since_epoch().count(), Qt::UTC);
}

sys_seconds FromQt(const QDateTime& at) {
  return sys_seconds{seconds{at.toSecsSinceEpoch()}};
}

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

QTimeZone ZoneOfVariable(std::string value) {
  if (value == ":/etc/localtime") return QTimeZone::systemTimeZone();
  if (value.starts_with(':')) value.erase(0, 1);
  std::error_code error;
  if (value.starts_with('/')) value = std::filesystem::canonical(value, error);
  if (value.starts_with(kZoneDirectory)) value.erase(0, kZoneDirectory.size());
  return IsInDatabase(value) ? QTimeZone(QByteArray::fromStdString(value)) : ZoneOfRule(value);
}

}  // namespace

Zone Zone::Local() {
  const char* variable = std::getenv("TZ");
  const QTimeZone zone = ZoneOfVariable(variable != nullptr ? variable : ":/etc/localtime");
  return Zone(zone.isValid() ? zone : QTimeZone::utc());
}

std::optional<Zone> Zone::Named(const std::string& name) {
  const QTimeZone zone(QByteArray::fromStdString(name));
  if (!IsInDatabase(name) || !zone.isValid()) return std::nullopt;
  return Zone(zone);
}

// Starts at the earliest transition that can matter. The first period with the wall time gives the first
// instant of a repeated time. If a period ends before the wall time and the next one begins after it, the
// time is in the gap between them.
Zone::Moment Zone::At(DateTime wall) const {
  const sys_seconds as_utc{std::clamp(wall, kFirstSecond, kLastSecond).time_since_epoch()};
  QDateTime asked = ToQt(std::max(as_utc - hours{26}, kFirstAsked));
  seconds offset{zone_.offsetFromUtc(asked)};
  for (;;) {
    const QTimeZone::OffsetData change = zone_.nextTransition(asked);
    const sys_seconds at = as_utc - offset;
    if (!change.atUtc.isValid() || at < FromQt(change.atUtc))
      return {at, offset, zone_.abbreviation(asked).toStdString(), false,
              DateTime{as_utc.time_since_epoch()}};
    offset = seconds{change.offsetFromUtc};
    if (as_utc - offset < FromQt(change.atUtc))
      return {at, offset, change.abbreviation.toStdString(), true,
              DateTime{(at + offset).time_since_epoch()}};
    asked = change.atUtc;
  }
}

DateTime Zone::EarliestWallAfter(sys_seconds at) const {
  at = std::clamp(at, sys_seconds{kFirstSecond.time_since_epoch()},
                  sys_seconds{kLastSecond.time_since_epoch()});
  const sys_seconds asked = std::max(at, kFirstAsked);
  seconds offset{zone_.offsetFromUtc(ToQt(asked))};
  const QDateTime change = zone_.previousTransition(ToQt(asked + seconds{1})).atUtc;
  if (change.isValid()) {
    const seconds earlier{zone_.offsetFromUtc(change.addSecs(-1))};
    if (asked - FromQt(change) < offset - earlier) offset = earlier;
  }
  return DateTime{(at + offset).time_since_epoch()};
}

}  // namespace plovix
