// What the list of tasks says of a task's runs: when the next one is, and what became of the last one. Used
// by TaskTableModel.
#pragma once

#include <plovix/standalone/schedule/runs.h>

#include <map>
#include <optional>

#include "app_parts.h"

namespace plovix::app {

struct TaskRuns {
  TaskState state;
  std::optional<RunRecord> latest, running;  // dry ones left out

  // The run that Cancel ends: the one under way, else the one that waits; nullptr if there is neither.
  [[nodiscard]] const RunRecord* Open() const;
};

struct RunsOfTasks {
  std::map<std::int64_t, TaskRuns> of;  // by the task's id
  std::optional<Pause> all_paused;

  // The defaults for a task that is not among them.
  [[nodiscard]] const TaskRuns& Of(std::int64_t task) const;
};
// A few statements, whatever the number of tasks, and one more for each task that runs.
[[nodiscard]] RunsOfTasks ReadRuns(RunStore& runs);

// A cell of the list.
struct RunCell {
  QString text;
  std::int64_t order = 0;       // by which rows are sorted
  bool is_bad = false;          // somebody should look at it
  bool counts_seconds = false;  // it says something else a second later
  bool operator==(const RunCell&) const = default;
};
// @{
// `all`: the pause of everything; `next`: the next run of the task's schedule. The tips say it exactly; they
// take longer.
[[nodiscard]] RunCell NextCell(const AppParts& parts, const TaskRuns& runs, const std::optional<Pause>& all,
                               std::optional<Instant> next, Instant now);
[[nodiscard]] QString NextTip(const AppParts& parts, const TaskRuns& runs, const std::optional<Pause>& all,
                              std::optional<Instant> next);
[[nodiscard]] RunCell LastCell(const AppParts& parts, const TaskRuns& runs, Instant now);
[[nodiscard]] QString LastTip(const AppParts& parts, const TaskRuns& runs);
// @}

// "Since 5 March 2026, 10:00 by admin: the disk is full". `key` and `with_reason`: of host texts with the
// parameters since, person and, in the latter, reason.
[[nodiscard]] QString PauseInWords(const AppParts& parts, std::string_view key, std::string_view with_reason,
                                   const Pause& pause);

}  // namespace plovix::app
