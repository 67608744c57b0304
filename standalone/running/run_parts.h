// What the windows of runs work with.
#pragma once

#include <plovix/standalone/runs/task_control.h>
#include <plovix/standalone/text/text_table.h>

#include <QString>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QWidget;

namespace plovix::app {

// References to objects that outlive every window.
struct RunParts {
  const TextTable& texts;
  RunStore& runs;
  TaskControl& control;  // on the user's behalf
  Zone zone;             // of the schedules, in which times are shown
  std::function<Instant()> now;
  // What the user sees of a task's name; nothing if they may not view it, and then its runs are not shown.
  std::function<std::optional<std::string>(std::int64_t task)> name;
  // Whether the user may do that with the task at present.
  std::function<bool(std::int64_t task, TaskRight right)> may;
  std::string output_folder;  // of what programs write
  // Stores another zone of the schedules, by its name; empty: the user may not.
  std::function<void(const std::string& zone)> set_zone = {};

  [[nodiscard]] QString Shown(std::string_view key, const std::vector<std::string>& parameters = {}) const;
  // "2026-02-27 08:00:00" in the user's locale and the schedules' zone.
  [[nodiscard]] std::string Time(Instant at) const;
  // The same with what the zone is called then, which tells the hour that the clocks repeat.
  [[nodiscard]] std::string ExactTime(Instant at) const;
};

// For RunParts::name: the words of `name_of`; for administrators, of a task that is gone, words that say so.
// `task`: as stored now.
[[nodiscard]] std::optional<std::string> NameFor(
    const UserRecord& user, const std::optional<TaskRecord>& task, const TextTable& texts,
    const std::function<std::string(const TaskRecord&)>& name_of);

// Does what the user asks for; tells in a box why it was refused. Returns whether it was done.
bool DoOrTell(const RunParts& parts, QWidget& window, const std::function<void()>& work);

}  // namespace plovix::app
