// The schedule of a task, for code that lists, previews or starts tasks.
#pragma once

#include <plovix/standalone/tasks/task_record.h>

#include <chrono>
#include <optional>

namespace plovix {

// The day from which the intervals of the task's schedule are counted; for a schedule not stored yet, the day
// of `now`.
[[nodiscard]] inline std::chrono::local_days ScheduleStart(const TaskRecord& task, DateTime now) {
  return task.schedule_start.value_or(std::chrono::floor<std::chrono::days>(now));
}

// Nothing for a task without a schedule or that the automation manager may not run.
[[nodiscard]] inline std::optional<RecurrenceRecord> ScheduleOf(const TaskRecord& task) {
  return task.allow_automation_manager ? task.recurrence : std::nullopt;
}

}  // namespace plovix
