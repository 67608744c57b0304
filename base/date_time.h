/// @file
/// Wall-clock times and days of the host. Used by controls, tasks and schedules.
#pragma once

#include <chrono>

#include "requirements.h"

namespace plovix {

/// Wall-clock time of the host, without a zone.
using DateTime = std::chrono::local_seconds;

/// "No date": 1899-12-30 00:00:00, the zero of the customary date-time values.
inline constexpr DateTime kZeroDate{std::chrono::local_days{std::chrono::year{1899} / 12 / 30}};

}  // namespace plovix
