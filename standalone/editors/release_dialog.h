// Shown before an imported task may run: everything that its actions would do, in full.
#pragma once

#include <plovix/standalone/tasks/task_record.h>
#include <plovix/standalone/widgets/editor_dialog.h>

namespace plovix::app {

// Accepted: release the task as it is shown; rejected: leave it paused. Enter releases only where its button
// has the focus.
class ReleaseDialog final : public EditorDialog {
 public:
  // `name`: of the task, as the list shows it.
  ReleaseDialog(const TextTable& texts, const TaskRecord& task, const std::string& name, QWidget* parent);
  [[nodiscard]] bool Changed() const override { return false; }  // nothing is entered

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

// The actions in order, each with its kind and all its settings. Each line of a setting is indented, so that
// none can pass for another setting, and characters that are not seen or turn the order of others are written
// by their number.
[[nodiscard]] QString ActionsInFull(const TaskRecord& task, const TextTable& texts);

}  // namespace plovix::app
