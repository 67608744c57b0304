// Whether a run may begin with the rights as they are at that moment. Asked at each claim: rights may have
// been taken away since the task was saved or the run was asked for.
#pragma once

#include <plovix/standalone/tasks/task_record.h>
#include <plovix/standalone/tasks/user_record.h>

#include <optional>
#include <string>
#include <vector>

#include "run_record.h"

namespace plovix {

// In words that name who lacks what, and what to do; nothing if the run may begin.
//
// Whoever saved the task must still be a user who may run it, and save it with the actions that it has; so
// must its owner, as a user, and the person who asked for the run, if one did. For what the schedule starts,
// the account `automation`, where there is a user of that id, must have the right to run the task; a personal
// task is its owner's affair. Of a task saved by nobody known, whose saver cannot be asked, the rest counts.
[[nodiscard]] std::optional<std::string> ClaimRefusal(const TaskRecord& task, const RunRecord& run,
                                                      const std::vector<UserRecord>& users);

}  // namespace plovix
