// Compares tasks part by part: which parts differ, and which were lost.
#pragma once

#include <plovix/standalone/tasks/task_fields.h>

#include <optional>
#include <string>

namespace plovix::testing_support {

// Calls visit(name, the part of each task) for each part except the schedule's pattern.
template <class Visit, class... Tasks>
void ForEachPart(const Visit& visit, const Tasks&... tasks) {
  ForEachField(kTaskFields, [&](auto name, auto field) { visit(name, tasks.*field...); });
  visit("Actions", tasks.actions...);
  visit("Categories", tasks.categories...);
  visit("Permissions", tasks.permissions...);
  visit("schedule start", tasks.schedule_start...);
  visit("Recurrence", tasks.recurrence.has_value()...);
  ForEachField(kRecurrenceFields, [&](auto name, auto field) {
    visit(name, tasks.recurrence.value_or(RecurrenceRecord{}).*field...);
  });
}

// The parts of a stored task that are not as they should be; empty if there are none.
inline std::string Differences(const std::optional<TaskRecord>& stored, const TaskRecord& wanted) {
  if (stored == wanted) return "";
  if (!stored) return "the task is gone";
  std::string names = "not the same (the pattern, the storage's own, or):";
  const auto note = [&](std::string_view name, const auto& one, const auto& other) {
    if (one != other) names.append(" ").append(name);
  };
  ForEachPart(note, *stored, wanted);
  return names;
}

// The names of lost parts: those that are neither as before nor as wanted.
inline std::string Lost(const TaskRecord& before, const TaskRecord& wanted, const TaskRecord& after) {
  std::string names;
  const auto note = [&](std::string_view name, const auto& former, const auto& good, const auto& now) {
    if (now != former && now != good) names.append(" ").append(name);
  };
  ForEachPart(note, before, wanted, after);
  const auto pattern = [](const TaskRecord& task) {
    return task.recurrence.value_or(RecurrenceRecord{}).pattern;
  };
  const PatternRecord former = pattern(before), good = pattern(wanted), present = pattern(after);
  if (after.recurrence) note("Pattern", former.index(), good.index(), present.index());
  // A pattern of another kind has nothing to lose.
  if (former.index() != present.index()) return names;
  ForEachField(kPatternFields, [&](auto name, auto field) {
    const auto* now = FieldIn(present, field);
    if (now == nullptr) return;
    const auto& kept = *FieldIn(former, field);
    const auto* typed = FieldIn(good, field);
    if constexpr (requires { now->size(); }) {  // the days, each separately
      for (std::size_t i = 0; i < now->size(); ++i)
        note(name, kept[i], (typed ? *typed : kept)[i], (*now)[i]);
    } else {
      note(name, kept, typed ? *typed : kept, *now);
    }
  });
  return names;
}

}  // namespace plovix::testing_support
