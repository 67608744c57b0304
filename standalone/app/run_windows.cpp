#include "run_windows.h"

#include <plovix/standalone/runner/output_folder.h>
#include <plovix/standalone/running/history_window.h>
#include <plovix/standalone/running/policies_dialog.h>
#include <plovix/standalone/running/run_details_window.h>
#include <plovix/standalone/tasks/task_access.h>

namespace plovix::app {

RunParts RunPartsOf(const AppParts& parts) {
  return {.texts = parts.state.texts,
          .runs = parts.runs,
          .control = parts.control,
          .zone = parts.zone,
          .now = [control = &parts.control] { return control->Now(); },
          .name =
              [parts](std::int64_t task) {
                return NameFor(parts.user, parts.storage.Load(task), parts.state.texts,
                               [&](const TaskRecord& stored) { return TaskName(parts, stored); });
              },
          .may =
              [parts](std::int64_t task, TaskRight right) {
                const auto stored = parts.storage.Load(task);
                return stored && May(parts.user, *stored, right);
              },
          .output_folder = runner::OutputFolder(parts.task_file),
          .set_zone = parts.user.administrator ? parts.set_zone : nullptr};
}

void ShowHistory(const AppParts& parts, std::optional<std::int64_t> task, QWidget& parent) {
  auto* window = new HistoryWindow(RunPartsOf(parts), task, &parent);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->show();
}

void ShowRun(const AppParts& parts, std::int64_t run, QWidget& parent) {
  const auto stored = parts.runs.Run(run);
  if (!stored) return;
  auto* window = new RunDetailsWindow(RunPartsOf(parts), *stored, &parent);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->show();
}

void EditPolicies(const AppParts& parts, std::int64_t task, QWidget& parent) {
  PoliciesDialog(RunPartsOf(parts), task, &parent).exec();
}

}  // namespace plovix::app
