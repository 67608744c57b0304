// The program's main window: the stored tasks, a filter, and what can be done with a task.
#pragma once

#include <plovix/standalone/tasks/task_access.h>
#include <plovix/standalone/widgets/filtered_table.h>

#include <QTimer>
#include <QWidget>
#include <functional>
#include <map>
#include <optional>
#include <set>

#include "app_parts.h"
#include "run_commands.h"
#include "task_table_model.h"

class QAction;
class QBoxLayout;
class QLabel;
class QPushButton;
class QStackedLayout;

namespace plovix::app {

class PauseBanner;
class WizardWindow;

class TaskListWindow final : public QWidget {
 public:
  explicit TaskListWindow(const AppParts& parts);

  // Reads the tasks again; selects the task with that id, or keeps the current selection.
  void Reload(std::optional<std::int64_t> select = std::nullopt);
  void New();
  void Edit();
  void Duplicate();
  void Delete();
  void Import();
  void Export();
  void EditUsers();
  // Opens the wizard on that page; `entries` go into its shared store, in addition to the user's.
  void Open(const TaskRecord& task, const std::string& page, std::map<std::string, Value> entries = {});

  // The wizard window opened last; nullptr once it is closed.
  [[nodiscard]] WizardWindow* OpenWizard() const noexcept { return wizard_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // A button of a row, with its key; also in the menu of the table's rows if it concerns the selected task.
  struct Command {
    const char* name;
    const char* caption;  // key of a host text
    std::function<void()> act;
    QKeySequence keys = {};
    bool on_task = true;
  };
  QAction* Add(QBoxLayout& row, const Command& command);
  void BuildTable();
  void BuildButtons();
  void BuildRunButtons();
  // Reads the user's rights again; if the user no longer exists, says so and empties the list.
  bool RefreshRights();
  // If not allowed, says so and reads the list again, because it may be out of date.
  bool AllowedOrTell(bool allowed, std::string_view text, const std::vector<std::string>& parameters = {});
  // Runs `work`, which uses the storage; tells the user if it fails.
  bool Guarded(const std::function<void()>& work);
  // The selected task as stored now, with the user's rights refreshed; nothing if there is no selection, the
  // task is gone, or the user may no longer see it.
  std::optional<TaskRecord> Selected();
  // The same, as far as the user has that right to it; tells `refusal` where not.
  std::optional<TaskRecord> SelectedFor(TaskRight right, std::string_view refusal);
  void TellUnreadable(const std::vector<UnreadableTask>& tasks);
  // The copy that Duplicate makes of the task.
  [[nodiscard]] TaskRecord CopyOf(TaskRecord task) const;
  [[nodiscard]] bool MayCreate() const;
  // What a person asked of runs; tells if it fails, and shows what became of it.
  void ChangeRuns(const std::function<void()>& work);
  // Shows what others have written about runs since it last looked; without that, tells the time.
  void Glance();
  void ShowRuns();
  void FitColumns();
  void FocusList();
  void UpdateState();
  void UpdateRunState();

  AppParts parts_;
  TaskTableModel* model_;
  FilteredTable rows_;
  RunCommands commands_;
  PauseBanner* banner_;
  QStackedLayout* table_or_hint_ = nullptr;
  QLabel *hint_ = nullptr, *count_ = nullptr, *unreadable_ = nullptr;
  QAction *new_ = nullptr, *edit_ = nullptr, *duplicate_ = nullptr, *delete_ = nullptr;
  QAction *import_ = nullptr, *export_ = nullptr, *users_ = nullptr;
  QAction *run_ = nullptr, *dry_run_ = nullptr, *cancel_ = nullptr, *pause_ = nullptr;
  QAction *policies_ = nullptr, *history_ = nullptr;
  bool known_user_ = true;  // whether the user still existed when the list was last read
  QTimer glance_;
  std::int64_t change_count_ = -1;  // of the runs, when they were last read
  Instant told_{};                  // when the times of runs were last told
  std::set<int> set_by_hand_;       // columns
  bool fitting_ = false;            // while fitting the columns to their contents
  WizardWindow* wizard_ = nullptr;
};

}  // namespace plovix::app
