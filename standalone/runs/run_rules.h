// The rules of the run stores that do not depend on where runs are stored: every store applies these, so that
// memory and files agree.
#pragma once

#include "run_store.h"

namespace plovix {

// Whether the run holds its task, so that no other run of it begins.
[[nodiscard]] inline bool Holds(const RunRecord& run) {
  return run.state == RunState::kRunning && !run.IsDry();
}
// Whether a waiting run may begin beside what else its task does.
[[nodiscard]] inline bool MayBegin(const RunRecord& run, const TaskState& task, bool all_paused) {
  if (run.IsDry()) return true;
  if (task.running_run != 0) return false;
  if (run.origin == RunOrigin::kManual) return true;
  return !all_paused && !task.IsPaused() && (run.IsRetrying() || !task.retrying);
}
// Whether a filter lets the run through; the number of runs apart.
[[nodiscard]] bool Passes(const RunRecord& run, const RunFilter& filter);
// Likewise for what people did.
[[nodiscard]] bool Passes(const AuditEntry& entry, const AuditFilter& filter);
// @{
// What Trim keeps the last one of.
[[nodiscard]] inline bool IsSuccess(const RunRecord& run) {
  return run.state == RunState::kSucceeded && !run.IsDry();
}
[[nodiscard]] inline bool IsFailure(const RunRecord& run) {
  return (run.state == RunState::kFailed || run.state == RunState::kPartly) && !run.IsDry();
}
// @}
// @{
// What is written down of a deed.
[[nodiscard]] AuditEntry EntryOf(Deed deed, const Doer& by, std::int64_t task, std::int64_t run = 0,
                                 std::string detail = {});
[[nodiscard]] AuditEntry EntryOfRequest(const RunRecord& run);
[[nodiscard]] AuditEntry EntryOfPause(std::int64_t task, const std::optional<Pause>& pause, const Doer& by);
[[nodiscard]] AuditEntry EntryOfPolicies(std::int64_t task, const TaskPolicies& policies, const Doer& by);
// @}
// Whether a person is asked what to do with the record.
[[nodiscard]] inline bool IsUndecided(const LedgerRow& row) {
  return row.state == LedgerState::kFailed || row.state == LedgerState::kInDoubt;
}
// The run as its manager has it from now on.
[[nodiscard]] RunRecord Begun(RunRecord run, Instant now, std::int64_t manager);
// The run as `end` leaves it.
[[nodiscard]] RunRecord Ended(RunRecord run, const RunEnd& end);
// The row of a pause that stands for more occurrences from now on.
[[nodiscard]] RunRecord Extended(RunRecord row, const MissedSpan& more);

}  // namespace plovix
