// A task with a value in every place, for the tests of everything that stores tasks.
#pragma once

#include <plovix/standalone/tasks/task_fields.h>

#include <limits>

namespace plovix::test {

// A task in which no plain field has its initial value.
inline TaskRecord FullTask(const PatternRecord& pattern = {}, const std::string& odd = "ö") {
  TaskRecord task;
  ForEachField(std::tuple_cat(kTaskTextFields, kTaskSettingFields), [&](std::string_view name, auto field) {
    auto& value = task.*field;
    if constexpr (std::is_same_v<decltype(value), std::string&>)
      value = std::string(name) + odd;
    else if constexpr (std::is_same_v<decltype(value), DateTime&>)
      value += std::chrono::seconds{1};
    else
      value = std::numeric_limits<std::remove_reference_t<decltype(value)>>::max();
  });
  task.categories = {{"NameTag" + odd, false}, {odd, true}};
  task.permissions = {{odd, true, true, false, true, false}, {odd + "2", true, false, true, false, true}};
  task.recurrence = RecurrenceRecord{-3, 2, 7, RecurrenceRecord::kFirstExecutionTime, pattern};
  task.schedule_start = std::chrono::local_days{std::chrono::year{9999} / 12 / 31};
  task.actions = {{"write-log", odd, 16, 8, {{"text", odd}, {odd, ""}, {"", odd}}}, {}};
  return task;
}

}  // namespace plovix::test
