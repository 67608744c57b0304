// The commands of the list of tasks: buttons, keys and the menu of a row, and which of them can be used.
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QAction>
#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QStackedLayout>
#include <QTableView>

#include "pause_banner.h"
#include "task_list_window.h"

namespace plovix::app {

// The button leaves the focus to the table when it can no longer be used: runs end by themselves.
QAction* TaskListWindow::Add(QBoxLayout& row, const Command& command) {
  auto* action = new QAction(this);
  action->setText(parts_.Shown(command.caption));
  action->setShortcut(command.keys);
  connect(action, &QAction::triggered, this, command.act);
  addAction(action);
  if (command.on_task) rows_.Table().addAction(action);
  QPushButton* button = NewButton(action->text(), [action] { action->trigger(); });
  button->setObjectName(command.name);
  button->setToolTip(qt::ToolTip(command.keys.toString(QKeySequence::NativeText)));
  connect(action, &QAction::changed, button, [this, action, button] {
    EnableBeside(rows_.Table(), *button, action->isEnabled());
    if (button->text() != action->text()) button->setText(action->text());
  });
  row.addWidget(button);
  return action;
}

void TaskListWindow::BuildButtons() {
  QHBoxLayout* row = NewRow({});
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  new_ = Add(*row, {"new", "list.new", [this] { New(); }, QKeySequence::New, false});
  edit_ = Add(*row, {"edit", "list.edit", [this] { Edit(); }});
  duplicate_ = Add(*row, {"duplicate", "list.duplicate", [this] { Duplicate(); }});
  delete_ = Add(*row, {"delete", "list.delete", [this] { Delete(); }});
  import_ = Add(*row, {"import", "list.import", [this] { Import(); }, {}, false});
  export_ = Add(*row, {"export", "list.export", [this] { Export(); }});
  users_ = Add(*row, {"users", "list.users", [this] { EditUsers(); }, {}, false});
  count_ = qt::NewLabel();
  row->addStretch();
  row->addWidget(count_);
}

void TaskListWindow::BuildRunButtons() {
  QHBoxLayout* row = NewRow({});
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  auto* line = new QAction(this);
  line->setSeparator(true);
  rows_.Table().addAction(line);
  run_ = Add(*row, {"runNow", "list.run", [this] { commands_.RunNow(); }, QKeySequence("Ctrl+R")});
  dry_run_ = Add(*row, {"dryRun", "list.dryRun", [this] { commands_.DryRun(); }, QKeySequence("Ctrl+D")});
  cancel_ = Add(*row, {"cancelRun", "list.cancel", [this] { commands_.Cancel(); }, QKeySequence("Ctrl+K")});
  pause_ = Add(*row, {"pause", "list.pause", [this] { commands_.PauseOrResume(); }, QKeySequence("Ctrl+P")});
  policies_ = Add(*row, {"policies", "list.policies", [this] { commands_.EditPolicies(); }});
  history_ =
      Add(*row, {"history", "list.history", [this] { commands_.ShowHistory(); }, QKeySequence("Ctrl+H")});
  Add(*row, {"allRuns", "list.allRuns", [this] { commands_.ShowAllRuns(); }, {}, false});
  row->addStretch();
}

void TaskListWindow::UpdateState() {
  const bool selected = rows_.SelectedRow() >= 0;
  const auto may = [&](TaskRight right) {
    return selected && May(parts_.user, model_->Task(rows_.SelectedRow()), right);
  };
  edit_->setEnabled(may(TaskRight::kEdit));
  delete_->setEnabled(may(TaskRight::kDelete));
  const auto may_copy = [this] {
    const TaskRecord copy = CopyOf(model_->Task(rows_.SelectedRow()));
    return !RefusalOf(parts_.user, nullptr, &copy);
  };
  duplicate_->setEnabled(selected && may_copy());
  export_->setEnabled(selected);
  for (QAction* action : {new_, import_}) action->setEnabled(MayCreate());
  users_->setEnabled(parts_.user.administrator);
  UpdateRunState();
  const int all = model_->rowCount();
  const int visible = rows_.Shown().rowCount();
  const auto* hint = !known_user_ ? "rights.noUser" : all == 0 ? "list.empty" : "list.noMatch";
  hint_->setText(parts_.Shown(hint));
  table_or_hint_->setCurrentWidget(visible == 0 ? static_cast<QWidget*>(hint_) : &rows_.Table());
  count_->setText(ToQt(
      visible == all ? parts_.Text("list.count", {std::to_string(all)})
                     : parts_.Text("list.countFiltered", {std::to_string(visible), std::to_string(all)})));
}

void TaskListWindow::UpdateRunState() {
  const int row = rows_.SelectedRow();
  const auto may = [&](TaskRight right) { return row >= 0 && May(parts_.user, model_->Task(row), right); };
  const TaskRuns runs = row >= 0 ? model_->Runs(row) : TaskRuns();
  for (QAction* action : {run_, dry_run_}) action->setEnabled(may(TaskRight::kRun));
  cancel_->setEnabled(may(TaskRight::kRun) && runs.Open() != nullptr);
  const bool held = runs.state.held;
  pause_->setEnabled(may(held ? TaskRight::kRun : TaskRight::kEdit));
  pause_->setText(parts_.Shown(held ? "list.release" : runs.state.paused ? "list.resume" : "list.pause"));
  policies_->setEnabled(may(TaskRight::kEdit));
  history_->setEnabled(may(TaskRight::kView));
  banner_->Show(model_->AllPaused());
}

}  // namespace plovix::app
