// What a schedule and its runs mean, in the user's words: for the task list, the wizard and the script
// surface. Every sentence is one text of the language table, so that a translator has the whole of it.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>
#include <plovix/standalone/text/text_table.h>

#include <functional>
#include <optional>
#include <string>

#include "outlook.h"

namespace plovix {

// A time of day as the reader writes it; the date does not count.
using TimeFormat = std::function<std::string(DateTime at)>;
// "08:00", "08:00:30": 24 hours, seconds only when there are any.
[[nodiscard]] std::string ClockTime(DateTime at);

// Sentences without a full stop. Numbers that are not yet set (0) read as 1, as they run.
struct ScheduleWords {
  // "Every 2 weeks on Monday and Friday, at 08:00". Says as much when there is no schedule, when it has no
  // pattern yet, and when it can never run.
  std::string sentence;
  // "Starts on 5 March 2027": where the start lies in the future, no run comes within a year, or none at all.
  std::optional<std::string> note;
  // "More than a year without a run: none between 5 January 2026 and 1 January 2037".
  std::optional<std::string> warning;
  // Whether the day that intervals are counted from stands in one of them.
  bool name_start = false;
};
// `outlook`: of that recurrence; without one it does not count.
[[nodiscard]] ScheduleWords InWords(const std::optional<RecurrenceRecord>& recurrence, const Outlook& outlook,
                                    const TextTable& texts, const TimeFormat& time = ClockTime);
// All of them for a single line, the warning first, where it is seen.
[[nodiscard]] std::string OneLine(const ScheduleWords& words, const TextTable& texts);

// Why a run is on another day of its month, or at another time, than the schedule says, to be read beside
// the time at which it runs; nothing when it is not.
[[nodiscard]] std::optional<std::string> RunNote(const Run& run, const TextTable& texts,
                                                 const TimeFormat& time = ClockTime);

}  // namespace plovix
