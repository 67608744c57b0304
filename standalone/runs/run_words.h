// Runs in words of a text table, for windows, notifications and lines of text: every surface says the same.
#pragma once

#include <plovix/standalone/text/text_table.h>

#include <chrono>
#include <string>

#include "run_store.h"

namespace plovix {

// What became of the run: "Succeeded", "Missed (3)", "Waiting for the next attempt".
[[nodiscard]] std::string StateInWords(const RunRecord& run, const TextTable& texts);
// What started it, with the person who did.
[[nodiscard]] std::string OriginInWords(const RunRecord& run, const TextTable& texts);
// The manager's own reasons as sentences, all others as they are; empty if there is none.
[[nodiscard]] std::string ReasonInWords(const RunRecord& run, const TextTable& texts);
// Why it is paused: the manager's own reason as a sentence, a person's as it is.
[[nodiscard]] std::string ReasonInWords(const Pause& pause, const TextTable& texts);
// How long after its due instant the first attempt began: "on time", "2 min late". Empty for what was not
// due, has not begun, or was begun again.
[[nodiscard]] std::string LatenessInWords(const RunRecord& run, const TextTable& texts);
// "3 of 3 done", "6 found: 3 done, 1 failed, 2 skipped"; empty where no record was found.
[[nodiscard]] std::string CountsInWords(const RecordCounts& records, const TextTable& texts);
// The key of a record as a person knows it, without its type.
[[nodiscard]] std::string RecordInWords(const std::string& key, const TextTable& texts);
// What became of a record: "Done", "In doubt".
[[nodiscard]] std::string StateInWords(LedgerState state, const TextTable& texts);
// Of the latest attempt, of one under way until `now`; empty before the first.
[[nodiscard]] std::string DurationInWords(const RunRecord& run, Instant now, const TextTable& texts);
// Rounded down to at most two units: "45 s", "3 min 20 s", "2 h 5 min", "3 d 4 h". From 0.
[[nodiscard]] std::string DurationInWords(std::chrono::seconds time, const TextTable& texts);
// "5 min ago", "in 2 h", "now"; in one unit.
[[nodiscard]] std::string DistanceInWords(Instant at, Instant now, const TextTable& texts);

}  // namespace plovix
