/// @file
/// Wall times as ISO 8601 text: in the database, in scripts and in their output.
#pragma once

#include <plovix/base/date_time.h>

#include <optional>
#include <string>
#include <string_view>

namespace plovix {

/// @{
/// "2026-01-05T08:00:00" and "2026-01-05". Years outside 0 to 9999 are written, but cannot be read back.
[[nodiscard]] std::string IsoDateTime(DateTime value);
[[nodiscard]] std::string IsoDate(std::chrono::local_days day);
/// @}

/// @{
/// Reads exactly these forms, for existing days and times only; nothing for any other text.
[[nodiscard]] std::optional<DateTime> ParseIsoDateTime(std::string_view text);
[[nodiscard]] std::optional<std::chrono::local_days> ParseIsoDate(std::string_view text);
/// @}

}  // namespace plovix
