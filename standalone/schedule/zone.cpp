#include "zone.h"

#include <date/tz.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>

#include "calendar_range.h"
#include "posix_rule.h"

namespace plovix {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr sys_seconds kFirstInstant{kFirstSecond.time_since_epoch()};
constexpr sys_seconds kLastInstant{kLastSecond.time_since_epoch()};

// Where the zone database of the system is, in part of the paths that TZ may hold.
constexpr std::string_view kZoneDirectory = "/usr/share/zoneinfo/";

// The rule in the last line of a zone's file; nothing when the file has none.
std::optional<PosixRule> RuleInFile(const std::string& name) {
  std::ifstream file(std::string(kZoneDirectory) + name, std::ios::binary);
  std::string bytes(std::istreambuf_iterator<char>(file), {});
  if (!bytes.ends_with('\n')) return std::nullopt;
  bytes.pop_back();
  return PosixRule::Parse(std::string_view(bytes).substr(bytes.rfind('\n') + 1));
}

}  // namespace

class Zone::Source {
 public:
  virtual ~Source() = default;
  // The period that `at` is in. Only `begin` and `end` may lie outside kFirstInstant to kLastInstant.
  [[nodiscard]] virtual OffsetPeriod At(sys_seconds at) const = 0;
};

namespace {

class PosixSource final : public Zone::Source {
 public:
  explicit PosixSource(PosixRule rule) : rule_(std::move(rule)) {}
  [[nodiscard]] OffsetPeriod At(sys_seconds at) const override { return rule_.At(at); }

 private:
  PosixRule rule_;
};

// The library gives the changes that are stored in the zone's file, which end with the year 2037 for most
// zones; the rule in the file says what follows.
class DatabaseSource final : public Zone::Source {
 public:
  explicit DatabaseSource(const date::time_zone& zone) : zone_(zone), later_(RuleInFile(zone.name())) {}

  [[nodiscard]] OffsetPeriod At(sys_seconds at) const override {
    const date::sys_info info = zone_.get_info(at);
    if (info.end > kLastInstant && info.begin > kFirstInstant && later_) {
      OffsetPeriod period = later_->At(at);
      period.begin = std::max(period.begin, info.begin);
      return period;
    }
    return {info.begin, info.end, info.offset, info.abbrev};
  }

 private:
  const date::time_zone& zone_;  // the database lives as long as the program
  std::optional<PosixRule> later_;
};

// Every failure of the library is one answer: no such zone.
std::shared_ptr<const Zone::Source> DatabaseZone(const std::string& name) try {
  return std::make_shared<DatabaseSource>(*date::locate_zone(name));
} catch (const std::exception&) {
  return nullptr;
}

std::shared_ptr<const Zone::Source> PosixZone(std::string_view text) {
  std::optional<PosixRule> rule = PosixRule::Parse(text);
  return rule ? std::make_shared<PosixSource>(*std::move(rule)) : nullptr;
}

std::shared_ptr<const Zone::Source> SystemZone() try {
  return std::make_shared<DatabaseSource>(*date::current_zone());
} catch (const std::exception&) {
  return nullptr;
}

std::shared_ptr<const Zone::Source> ZoneOfVariable(std::string_view value) {
  if (value.starts_with(':')) value.remove_prefix(1);
  if (value == "/etc/localtime") return SystemZone();
  if (value.starts_with(kZoneDirectory)) value.remove_prefix(kZoneDirectory.size());
  auto source = DatabaseZone(std::string(value));
  return source ? source : PosixZone(value);
}

}  // namespace

Zone::Zone(std::shared_ptr<const Source> source) : source_(std::move(source)) {}

Zone Zone::Local() {
  const char* variable = std::getenv("TZ");
  auto source = variable != nullptr ? ZoneOfVariable(variable) : SystemZone();
  return Zone(source ? std::move(source) : PosixZone("UTC0"));
}

std::optional<Zone> Zone::Named(const std::string& name) {
  auto source = DatabaseZone(name);
  if (!source) return std::nullopt;
  return Zone(std::move(source));
}

// Walks from the earliest period that can have the wall time. The first one that has it gives a repeated
// time's first instant; when a period ends before the wall time and the next one begins after it, the time is
// in the gap between them.
Zone::Moment Zone::At(DateTime wall) const {
  const sys_seconds as_utc{std::clamp(wall, kFirstSecond, kLastSecond).time_since_epoch()};
  OffsetPeriod period = source_->At(std::max(as_utc - hours{26}, kFirstInstant));
  while (as_utc - period.offset >= period.end && period.end <= kLastInstant) {
    OffsetPeriod next = source_->At(period.end);
    if (as_utc - next.offset < next.begin) {
      const sys_seconds at = as_utc - period.offset;
      return {at, next.offset, next.abbreviation, true, DateTime{(at + next.offset).time_since_epoch()}};
    }
    period = std::move(next);
  }
  return {as_utc - period.offset, period.offset, std::move(period.abbreviation), false,
          DateTime{as_utc.time_since_epoch()}};
}

DateTime Zone::EarliestWallAfter(sys_seconds at) const {
  at = std::clamp(at, kFirstInstant, kLastInstant);
  const OffsetPeriod period = source_->At(at);
  seconds offset = period.offset;
  if (period.begin > kFirstInstant) {
    const seconds earlier = source_->At(period.begin - seconds{1}).offset;
    if (at - period.begin < offset - earlier) offset = earlier;
  }
  return DateTime{(at + offset).time_since_epoch()};
}

}  // namespace plovix
