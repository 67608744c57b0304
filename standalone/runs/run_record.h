// One run of a task, asked for, under way or over, as a plain value. Every occurrence of a schedule becomes
// one, and so does everything that a person asks for; what did not run stands in the same list, with its
// reason.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

using Instant = std::chrono::sys_seconds;

enum class RunOrigin { kSchedule, kCatchUp, kManual, kDryRun };
enum class RunState {
  kWaiting,  // also between two attempts
  kRunning,
  kSucceeded,
  kFailed,
  kPartly,  // some records done, some failed
  kCancelled,
  kInterrupted,  // its manager died or was stopped, and it is not to be repeated
  kMissed,       // one row for all that nobody ran, `missed` says which
  kSkipped
};
// As history, files and scripts write them, in the order of the enumerations.
inline constexpr std::array<std::string_view, 4> kRunOriginNames{"schedule", "catch-up", "manual", "dry-run"};
inline constexpr std::array<std::string_view, 9> kRunStateNames{
    "waiting", "running", "succeeded", "failed", "partly", "cancelled", "interrupted", "missed", "skipped"};
template <class Enum>
[[nodiscard]] constexpr std::size_t IndexOf(Enum value) {
  return static_cast<std::size_t>(value);
}

struct RecordCounts {
  std::int64_t found = 0;  // rows of the query
  std::int64_t done = 0;
  std::int64_t failed = 0;
  std::int64_t skipped = 0;  // by the ledger or the base date
  bool operator==(const RecordCounts&) const = default;
};

// What one row of kMissed stands for.
struct MissedSpan {
  Instant from, to;  // the first and the last of them
  std::int64_t count = 0;
  bool operator==(const MissedSpan&) const = default;
};

struct RunRecord {
  std::int64_t id = 0;  // ascending in the order of making, never given twice
  std::int64_t task = 0;
  std::optional<Instant> due;  // of the schedule; nothing for what a person asked for
  RunOrigin origin = RunOrigin::kSchedule;
  RunState state = RunState::kWaiting;
  Instant not_before{};                   // while waiting: no attempt begins earlier
  int attempt = 0;                        // of those begun
  int failures = 0;                       // attempts that failed
  int repeats = 0;                        // attempts that followed a crash of the manager
  std::int64_t epoch = 0;                 // raised by each claim; a former owner's is lower
  std::int64_t manager = 0;               // while running: who
  std::optional<Instant> started, ended;  // the latest attempt's
  std::string reason;                     // why it ended so or waits, for a person; empty if all went well
  std::string person;                     // who asked for it; empty for the schedule's
  std::vector<std::string> keys;          // the records chosen; empty: those of the query
  bool cancel = false;                    // a person wants it to end
  RecordCounts records;
  std::optional<MissedSpan> missed;
  std::string planned;  // of a dry run: what would have been executed, as JSON

  [[nodiscard]] bool IsDry() const { return origin == RunOrigin::kDryRun; }
  [[nodiscard]] bool IsOver() const { return state != RunState::kWaiting && state != RunState::kRunning; }
  // Begun before, and to be begun again.
  [[nodiscard]] bool IsRetrying() const { return state == RunState::kWaiting && attempt > 0; }
  bool operator==(const RunRecord&) const = default;
};

// What is known of a task and one record, whatever the number of runs.
enum class LedgerState { kBegun, kDone, kFailed, kInDoubt };
inline constexpr std::array<std::string_view, 4> kLedgerStateNames{"begun", "done", "failed", "in-doubt"};

struct LedgerRow {
  std::string record;  // typed: "i:42", "t:42"
  LedgerState state = LedgerState::kBegun;
  std::string fingerprint;  // of the record as it was processed
  std::int64_t run = 0;     // the latest one that took it
  std::string reason;       // of a failure
  bool operator==(const LedgerRow&) const = default;
};

}  // namespace plovix
