// A schedule and its runs in words, for the task list, the wizard and the script surface. Every sentence is
// one text of the language table, so that translators see whole sentences.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>
#include <plovix/standalone/text/text_table.h>

#include <functional>
#include <optional>
#include <string>

#include "outlook.h"

namespace plovix {

// Formats a time of day for the reader; the date does not count.
using TimeFormat = std::function<std::string(DateTime at)>;
// "08:00", "08:00:30": 24 hours, with seconds only if they are not zero.
[[nodiscard]] std::string ClockTime(DateTime at);

// Sentences without a full stop. Numbers that are not yet set (0) read as 1, as the engine uses them.
struct ScheduleWords {
  // "Every 2 weeks on Monday and Friday, at 08:00". Also says if there is no schedule, it has no pattern yet,
  // or it can never run.
  std::string sentence;
  // "Starts on 5 March 2027": if the start is in the future, no run comes within a year, or none at all.
  std::optional<std::string> note;
  // "More than a year without a run: none between 5 January 2026 and 1 January 2037".
  std::optional<std::string> warning;
  // Whether the day from which intervals are counted is in one of them.
  bool name_start = false;
};
// `outlook`: that of the recurrence; without a recurrence it is ignored.
[[nodiscard]] ScheduleWords InWords(const std::optional<RecurrenceRecord>& recurrence, const Outlook& outlook,
                                    const TextTable& texts, const TimeFormat& time = ClockTime);
// All of them on a single line, with the warning first, where it is noticed.
[[nodiscard]] std::string OneLine(const ScheduleWords& words, const TextTable& texts);

// Why a run's day of the month or time differs from the schedule, to be read beside its time; nothing if
// neither differs.
[[nodiscard]] std::optional<std::string> RunNote(const Run& run, const TextTable& texts,
                                                 const TimeFormat& time = ClockTime);

}  // namespace plovix
