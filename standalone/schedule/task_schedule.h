// The schedule of a task, for code that lists, previews or starts tasks.
#pragma once

#include <plovix/standalone/tasks/task_record.h>

#include <chrono>
#include <cstddef>
#include <optional>

#include "outlook.h"

namespace plovix {

// The day from which the intervals of the task's schedule are counted; for a schedule not stored yet, the day
// of `now`.
[[nodiscard]] inline std::chrono::local_days ScheduleStart(const TaskRecord& task, DateTime now) {
  return task.schedule_start.value_or(std::chrono::floor<std::chrono::days>(now));
}

// What is to come for `recurrence` as the schedule of the task: the stored one or a draft of it.
// `short_month`: of the task's stored policies. `count`: as for the other OutlookOf.
[[nodiscard]] inline Outlook OutlookOf(const TaskRecord& task, const RecurrenceRecord& recurrence,
                                       ShortMonth short_month, const Zone& zone, std::chrono::sys_seconds now,
                                       std::size_t count = 1) {
  const std::chrono::local_days start = ScheduleStart(task, zone.WallAt(now));
  return OutlookOf(recurrence, start, short_month, zone, now, count);
}

// Nothing for a task without a schedule or that the automation manager may not run.
[[nodiscard]] inline std::optional<RecurrenceRecord> ScheduleOf(const TaskRecord& task) {
  return task.allow_automation_manager ? task.recurrence : std::nullopt;
}

}  // namespace plovix
