// The columns that hold the fields of a task and its actions, most of them under the fields' documented
// names. Used by the storage, which makes its statements from them.
#pragma once

#include <plovix/standalone/tasks/task_record.h>

#include <span>

#include "columns.h"

namespace plovix {

using TaskColumn = ColumnOf<TaskRecord>;
using ActionColumn = ColumnOf<ActionRecord>;

// Of VeloAutoTasks: all except Id and Version, which the storage assigns.
[[nodiscard]] std::span<const TaskColumn> TaskColumns();
// Of VeloAutoTaskSchedules: all except TaskId. To be read in this order, into a task that has a recurrence:
// the kind of the pattern decides which of the following columns have a value; all others are NULL.
[[nodiscard]] std::span<const TaskColumn> ScheduleColumns();
// Of VeloAutoTaskActions: all but TaskId and Position.
[[nodiscard]] std::span<const ActionColumn> ActionColumns();

// The statement of TaskStorage::TurnOffClearing; its parameter is the task's id.
inline constexpr std::string_view kTurnOffClearing =
    "UPDATE VeloAutoTasks SET ProcessAllRecords = 0, ProcessFailedRecords = 0 WHERE Id = ?";
// The statement of TaskStorage::Release; its parameters are the task's id and version.
inline constexpr std::string_view kEndHold =
    "UPDATE VeloAutoTasks SET Held = 0 WHERE Id = ? AND Version = ? AND Held <> 0";

}  // namespace plovix
