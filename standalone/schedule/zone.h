// A time zone: the only place that converts wall times into instants. Used by Timetable and by the host.
#pragma once

#include <plovix/controls/kinds.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "zone_periods.h"

namespace plovix {

// Cheap to copy and to find again: all zones of one name share their periods, which are kept for the life of
// the process. Wall times and instants outside the years -9999 to 9999 are clamped to them.
class Zone {
 public:
  // The zone of the TZ variable (a zone's name, the path of its file in the system's database or a POSIX
  // rule; a leading ':' is allowed); without the variable, the system's zone; UTC if neither is known. Never
  // throws.
  [[nodiscard]] static Zone Local();
  // `name`: of the system's zone database, for instance "Europe/Paris", or a POSIX rule, in which "UTC-3" is
  // three hours ahead of UTC. Nothing if it is neither; "UTC" is always known.
  [[nodiscard]] static std::optional<Zone> Named(const std::string& name);

  // By which Named finds this zone again, on every machine whose database has it.
  [[nodiscard]] const std::string& Name() const { return data_->name; }

  struct Moment {
    std::chrono::sys_seconds at;
    std::chrono::seconds offset;  // wall time minus UTC
    std::string abbreviation;     // as in the zone database: "CET", "+03"
    bool shifted;                 // the requested wall time does not exist
    DateTime wall;                // the requested wall time; one gap later if shifted
  };
  // The instant of a wall time: a repeated one means its first instant; one in a gap is shifted by the gap.
  [[nodiscard]] Moment At(DateTime wall) const;
  // The time on the clock.
  [[nodiscard]] DateTime WallAt(std::chrono::sys_seconds at) const;
  // The time between two changes of the clocks in which the instant is.
  [[nodiscard]] ZonePeriod PeriodAt(std::chrono::sys_seconds at) const { return data_->periods.At(at); }

 private:
  struct Data {
    std::string name;
    ZonePeriods periods;
  };
  Zone(const std::string& name, const QTimeZone& zone);

  std::shared_ptr<const Data> data_;
};

}  // namespace plovix
