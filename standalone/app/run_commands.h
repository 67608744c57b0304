// What a person asks of the selected task's runs. Used by the list of tasks, whose window lends what is
// needed.
#pragma once

#include <plovix/standalone/tasks/task_access.h>

#include <functional>
#include <optional>
#include <string_view>

#include "app_parts.h"

class QWidget;

namespace plovix::app {

class RunCommands final {
 public:
  struct Window {
    QWidget& widget;
    // The selected task as stored now, if the user has that right to it; `refusal` says it where not. Nothing
    // without a selection.
    std::function<std::optional<TaskRecord>(TaskRight right, std::string_view refusal)> selected_for;
    // Whether the selected task is an imported one that was not released.
    std::function<bool()> held;
    // Tells the user if the work fails, and shows what it changed.
    std::function<void(const std::function<void()>& work)> changing;
  };
  RunCommands(AppParts parts, Window window) : parts_(std::move(parts)), window_(std::move(window)) {}

  // Asks for the records where a person has to choose them.
  void RunNow();
  // Shows what would have been executed.
  void DryRun();
  // The run under way, else the one that waits. A run that is being cancelled can be closed by force.
  void Cancel();
  // The task, or everything. An imported one is released, once all that it does was shown.
  void PauseOrResume();
  void Release();
  void EditPolicies();
  void ShowHistory();
  void ShowAllRuns();
  void ResumeAll();

 private:
  // The keys for TaskControl::Start; nothing if the person thought better of it.
  [[nodiscard]] std::optional<std::vector<std::string>> ChooseRecords(const TaskRecord& task);
  [[nodiscard]] std::optional<RunRecord> OpenRunOf(std::int64_t task);

  AppParts parts_;
  Window window_;
};

}  // namespace plovix::app
