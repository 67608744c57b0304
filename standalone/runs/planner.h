// From a task's cursor to rows: what is due now is waiting, skipped, or one row for all that was missed, as
// the task's policies say. Used by Manager and where a task is resumed.
#pragma once

#include <plovix/standalone/schedule/runs.h>
#include <plovix/standalone/tasks/task_storage.h>

#include "run_store.h"

namespace plovix {

// How late an occurrence may begin without being a missed one.
inline constexpr std::chrono::seconds kLate{60};

// What the task's cursor follows from; empty for a task that is not scheduled. It differs where runs would.
[[nodiscard]] std::string ScheduleFingerprint(const TaskRecord& task, const TaskPolicies& policies,
                                              const Zone& zone);

// The rows for everything due at `now` or before and the new cursor; for a task whose schedule is another
// than the cursor's, the cursor is derived anew: from the instant of its last save, never back over what has
// a row. `all_paused`: the manager runs nothing that is scheduled.
[[nodiscard]] CursorMove PlanTask(const TaskRecord& task, const TaskState& state, const Zone& zone,
                                  Instant now, bool all_paused);

// Plans one task up to `now`; does nothing for one that is gone. Also to be called before a pause ends:
// resuming then does not catch up with what came due in it.
void PlanNow(TaskStorage& tasks, RunStore& runs, const Zone& zone, std::int64_t task, Instant now);

}  // namespace plovix
