// The schedule by which a task runs, for whoever lists, previews or starts tasks.
#pragma once

#include <plovix/standalone/model/task_record.h>

#include <chrono>
#include <optional>

namespace plovix {

struct TaskSchedule {
  // Nothing for a task without a schedule and for one that the automation manager may not run.
  std::optional<RecurrenceRecord> recurrence;
  // The day that intervals are counted from; for a schedule that was not stored yet the day of `now`.
  std::chrono::local_days start;
};

[[nodiscard]] inline TaskSchedule ScheduleOf(const TaskRecord& task, DateTime now) {
  const auto today = std::chrono::floor<std::chrono::days>(now);
  return {task.allow_automation_manager ? task.recurrence : std::nullopt,
          task.schedule_start.value_or(today)};
}

}  // namespace plovix
