// What people did to tasks and their runs, as plain values: written with the deed, and kept for a while.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "run_record.h"

namespace plovix {

// Who does something, and when.
struct Doer {
  std::string person;  // a user's id; empty: a program by itself
  Instant at{};
};

enum class Deed {
  kStart,
  kDryRun,
  kRunMissed,
  kCancel,
  kCloseByForce,
  kCountAsDone,  // of a record in doubt or failed; the detail is its key
  kForget,       // likewise
  kPause,        // the detail is the reason
  kResume,
  kPauseAll,  // likewise
  kResumeAll,
  kRelease,  // the detail is the task's version
  kSetPolicies
};
// As files write them, in the order of the enumeration.
inline constexpr std::array<std::string_view, 13> kDeedNames{
    "start", "dry-run", "run-missed", "cancel",     "close-by-force", "count-as-done", "forget",
    "pause", "resume",  "pause-all",  "resume-all", "release",        "set-policies"};

struct AuditEntry {
  std::int64_t id = 0;  // ascending, never given twice
  Instant at{};
  std::string person;  // as Doer's
  Deed deed = Deed::kStart;
  std::int64_t task = 0, run = 0;  // 0: of none
  std::string detail;
  bool operator==(const AuditEntry&) const = default;
};

// Which entries are looked for.
struct AuditFilter {
  std::optional<std::int64_t> task;    // nothing: of all
  std::optional<std::int64_t> before;  // an entry's id: only older ones, to read on
  std::size_t most = 200;
};

// The newest that are kept.
inline constexpr std::int64_t kMostAudits = 10'000;

}  // namespace plovix
