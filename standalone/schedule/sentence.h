// What a schedule and its runs mean, in the user's words: for the task list, the wizard and the script
// surface. Every sentence is one text of the language table, so that a translator has the whole of it.
#pragma once

#include <plovix/standalone/model/recurrence_record.h>
#include <plovix/standalone/model/text_table.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "runs.h"

namespace plovix {

// A time of day as the reader writes it; the date does not count.
using TimeFormat = std::function<std::string(DateTime at)>;
// "08:00", "08:00:30": 24 hours, seconds only when there are any.
[[nodiscard]] std::string ClockTime(DateTime at);

// The schedule in one sentence without a full stop: "Every 2 weeks on Monday and Friday, at 08:00". `start`
// is the day that Schedule counts from. Says as much when there is no schedule, when it has no pattern yet,
// and when it can never run. Numbers that are not yet set (0) read as 1, as they run.
[[nodiscard]] std::string ScheduleSentence(const std::optional<RecurrenceRecord>& recurrence,
                                           std::chrono::local_days start, const TextTable& texts,
                                           const TimeFormat& time = ClockTime);

// Why a run is on another day of its month, or at another time, than the schedule says, to be read beside
// the time at which it runs; nothing when it is not.
[[nodiscard]] std::optional<std::string> RunNote(const Run& run, const TextTable& texts,
                                                 const TimeFormat& time = ClockTime);

}  // namespace plovix
