// A time zone: the only place that converts wall times into instants. Used by NextRuns and by the host.
#pragma once

#include <plovix/controls/kinds.h>

#include <QTimeZone>
#include <chrono>
#include <optional>
#include <string>

namespace plovix {

// Cheap to copy. Wall times and instants outside the years -9999 to 9999 are clamped to them.
class Zone {
 public:
  // The zone of the TZ variable (a zone's name, the path of its file in the system's database or a POSIX
  // rule; a leading ':' is allowed); without the variable, the system's zone; UTC if neither is known. Never
  // throws.
  [[nodiscard]] static Zone Local();
  // Nothing if the system's zone database has no such zone. `name`: for instance "Europe/Paris".
  [[nodiscard]] static std::optional<Zone> Named(const std::string& name);

  struct Moment {
    std::chrono::sys_seconds at;
    std::chrono::seconds offset;  // wall time minus UTC
    std::string abbreviation;     // as in the zone database: "CET", "+03"
    bool shifted;                 // the requested wall time does not exist
    DateTime wall;                // the requested wall time; one gap later if shifted
  };
  // The instant of a wall time: a repeated one means its first instant; one in a gap is shifted by the gap.
  [[nodiscard]] Moment At(DateTime wall) const;
  // No wall time up to this one has an instant after `at`: the time on the clock, or an earlier one shortly
  // after a gap.
  [[nodiscard]] DateTime EarliestWallAfter(std::chrono::sys_seconds at) const;

 private:
  explicit Zone(const QTimeZone& zone) : zone_(zone) {}

  QTimeZone zone_;  // valid
};

}  // namespace plovix
