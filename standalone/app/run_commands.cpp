#include "run_commands.h"

#include <plovix/host/auto_task.h>
#include <plovix/standalone/query_builder/record_chooser_dialog.h>
#include <plovix/standalone/widgets/message_boxes.h>

#include "dry_run_dialog.h"
#include "pause_dialog.h"
#include "run_windows.h"
#include "task_exchange.h"

namespace plovix::app {

std::optional<std::vector<std::string>> RunCommands::ChooseRecords(const TaskRecord& task) {
  const std::string title = parts_.Text("choose.title", {InSentence(TaskName(parts_, task))});
  RecordChooserDialog dialog(parts_.state.texts, title, parts_.data_file, task, &window_.widget);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.Keys();
}

void RunCommands::RunNow() {
  const auto task = window_.selected_for(TaskRight::kRun, "list.mayNotRun");
  if (!task) return;
  const bool asks = task->record_mode == record_mode::kSingleRecord ||
                    (task->record_mode == record_mode::kQueryResults && !task->skip_row_selection);
  const auto keys = asks ? ChooseRecords(*task) : std::vector<std::string>();
  if (keys) window_.changing([&] { (void)parts_.control.Start(task->id, RunOrigin::kManual, *keys); });
}

// A query task shows what its schedule would do, so nothing is chosen.
void RunCommands::DryRun() {
  const auto task = window_.selected_for(TaskRight::kRun, "list.mayNotRun");
  if (!task) return;
  const bool asks = task->record_mode == record_mode::kSingleRecord;
  const auto keys = asks ? ChooseRecords(*task) : std::vector<std::string>();
  RunRecord run;
  if (keys) window_.changing([&] { run = parts_.control.Start(task->id, RunOrigin::kDryRun, *keys); });
  if (run.id != 0) DryRunDialog(parts_, TaskName(parts_, *task), run.id, &window_.widget).exec();
}

std::optional<RunRecord> RunCommands::OpenRunOf(std::int64_t task) {
  const auto state = parts_.runs.State(task);
  if (state && state->running_run != 0) return parts_.runs.Run(state->running_run);
  RunFilter waiting;
  waiting.task = task;
  waiting.states = {RunState::kWaiting};
  for (RunRecord& run : parts_.runs.Recent(waiting))
    if (!run.IsDry()) return std::move(run);
  return std::nullopt;
}

void RunCommands::Cancel() {
  const auto task = window_.selected_for(TaskRight::kRun, "list.mayNotRun");
  if (!task) return;
  std::optional<RunRecord> run;
  window_.changing([&] { run = OpenRunOf(task->id); });
  if (!run) return;
  const bool force = run->state == RunState::kRunning && run->cancel;
  const char* text = force ? "list.forceQuestion" : "list.cancelQuestion";
  const WarningQuestion question{parts_.Text(text, {InSentence(TaskName(parts_, *task))}),
                                 force ? "list.forceYes" : "list.cancelYes", "list.cancelNo"};
  if (!IsSure(parts_.state.texts, question, window_.widget)) return;
  window_.changing([&] { force ? parts_.control.CloseByForce(run->id) : parts_.control.Cancel(run->id); });
}

void RunCommands::Release() {
  const auto task = window_.selected_for(TaskRight::kRun, "list.mayNotRun");
  if (task && ReleaseTask(parts_, *task, &window_.widget)) window_.changing([] {});
}

void RunCommands::EditPolicies() {
  const auto task = window_.selected_for(TaskRight::kEdit, "list.mayNotEdit");
  if (task) window_.changing([&] { app::EditPolicies(parts_, task->id, window_.widget); });
}

void RunCommands::ShowHistory() {
  if (const auto task = window_.selected_for(TaskRight::kView, "list.mayNotView"))
    app::ShowHistory(parts_, task->id, window_.widget);
}

void RunCommands::ShowAllRuns() {
  app::ShowHistory(parts_, std::nullopt, window_.widget);
}

void RunCommands::PauseOrResume() {
  if (window_.held()) return Release();
  const auto task = window_.selected_for(TaskRight::kEdit, "list.mayNotPause");
  if (!task) return;
  std::optional<TaskState> state;
  window_.changing([&] { state = parts_.runs.State(task->id); });
  if (!state) return;
  if (state->paused) return window_.changing([&] { parts_.control.Resume(task->id); });
  const std::string name = InSentence(TaskName(parts_, *task));
  PauseDialog dialog(parts_.state.texts, name, parts_.user.administrator, &window_.widget);
  if (dialog.exec() != QDialog::Accepted) return;
  const auto which = dialog.Everything() ? std::nullopt : std::optional(task->id);
  window_.changing([&] { parts_.control.Pause(which, dialog.Reason()); });
}

void RunCommands::ResumeAll() {
  window_.changing([&] { parts_.control.Resume(std::nullopt); });
}

}  // namespace plovix::app
