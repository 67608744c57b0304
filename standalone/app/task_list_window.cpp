#include "task_list_window.h"

#include <plovix/framework/page_identifiers.h>
#include <plovix/standalone/editors/users_dialog.h>
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/tables.h>
#include <plovix/surfaces/qt/accessibility.h>
#include <plovix/surfaces/qt/plain_text.h>
#include <plovix/surfaces/qt/theme.h>

#include <QAction>
#include <QBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QStackedLayout>
#include <QTableView>
#include <utility>

#include "pause_banner.h"
#include "task_exchange.h"
#include "wizard_window.h"

namespace plovix::app {
namespace {

constexpr int kListWide = 180;
constexpr int kWidestColumn = 40;  // characters
constexpr int kListHigh = 30;
constexpr int kRowsMeasured = 100;  // for the width of a column
// How often it looks whether somebody has written; asking costs microseconds.
constexpr std::chrono::seconds kGlance{1};
constexpr std::chrono::minutes kTimesTold{1};

}  // namespace

TaskListWindow::TaskListWindow(const AppParts& parts)
    : parts_(parts),
      model_(new TaskTableModel(parts, this)),
      rows_(*model_, TaskTableModel::kSearchRole),
      commands_(parts,
                {.widget = *this,
                 .selected_for = [this](TaskRight right,
                                        std::string_view refusal) { return SelectedFor(right, refusal); },
                 .held =
                     [this] {
                       const int row = rows_.SelectedRow();
                       return row >= 0 && model_->Runs(row).state.held;
                     },
                 .changing = [this](const std::function<void()>& work) { ChangeRuns(work); }}),
      banner_(new PauseBanner(parts, [this] { commands_.ResumeAll(); })) {
  qt::AnnounceAs(*this, QAccessible::Window);
  qt::SetTitle(*this, parts_.Shown("list.title"));
  (new QVBoxLayout(this))->addWidget(banner_);
  BuildTable();
  BuildButtons();
  BuildRunButtons();
  ResizeToText(*this, qt::PageFont(), kListWide, kListHigh);
  const auto shortcut = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  shortcut(QKeySequence::Find, [this] {
    rows_.Field().setFocus();
    rows_.Field().selectAll();
  });
  shortcut(QKeySequence::Refresh, [this] { Reload(); });
  Reload();
  FocusList();
  glance_.callOnTimeout(this, [this] { Glance(); });
  glance_.start(kGlance);
}

void TaskListWindow::BuildTable() {
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->addLayout(rows_.NewFilterRow(parts_.Shown("list.filter"), parts_.Shown("list.filterHint")));
  rows_.Field().setObjectName("filter");
  rows_.Field().installEventFilter(this);
  rows_.Shown().setSortRole(TaskTableModel::kSortRole);
  rows_.Shown().setSortLocaleAware(true);
  QTableView& table = rows_.Table();
  table.setObjectName("tasks");
  table.setAccessibleName(qt::TitleOf(*this));
  table.setSortingEnabled(true);
  table.sortByColumn(TaskTableModel::kName, Qt::AscendingOrder);
  table.horizontalHeader()->setResizeContentsPrecision(kRowsMeasured);
  table.installEventFilter(this);
  table.setContextMenuPolicy(Qt::ActionsContextMenu);
  connect(table.horizontalHeader(), &QHeaderView::sectionResized, this, [this](int resized) {
    if (!fitting_) set_by_hand_.insert(resized);
  });
  connect(&table, &QTableView::doubleClicked, this, &TaskListWindow::Edit);
  rows_.OnChanged([this] { UpdateState(); });
  hint_ = qt::NewWrappedLabel();
  hint_->setAlignment(Qt::AlignCenter);
  table_or_hint_ = new QStackedLayout;
  table_or_hint_->addWidget(&table);
  table_or_hint_->addWidget(hint_);
  column->addLayout(table_or_hint_, 1);
  unreadable_ = NewProblemLabel();
  column->addWidget(unreadable_);
}

// The keys of the filter and of the list.
bool TaskListWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto& key = static_cast<QKeyEvent&>(*event);
  if (watched == &rows_.Field()) {
    const bool to_list = IsEnter(key) || key.key() == Qt::Key_Down;
    if (to_list) FocusList();
    if (key.key() == Qt::Key_Escape) rows_.Field().clear();
    return to_list || key.key() == Qt::Key_Escape;
  }
  if (IsEnter(key)) Edit();
  if (key.key() == Qt::Key_Delete) Delete();
  return IsEnter(key) || key.key() == Qt::Key_Delete;
}

void TaskListWindow::Reload(std::optional<std::int64_t> select) {
  const int row = rows_.SelectedRow();
  if (!select && row >= 0) select = model_->Task(row).id;
  Guarded([this] {
    std::vector<UnreadableTask> unreadable;
    auto tasks = parts_.storage.ListReadable([&](const auto& task) { unreadable.push_back(task); });
    known_user_ = RefreshUser(parts_.state, parts_.tables, parts_.user);
    TellUnreadable(unreadable);
    std::erase_if(
        tasks, [&](const auto& task) { return !known_user_ || !May(parts_.user, task, TaskRight::kView); });
    change_count_ = parts_.runs.ChangeCount();
    model_->SetTasks(std::move(tasks), ReadRuns(parts_.runs));
    told_ = parts_.control.Now();
  });
  if (select) rows_.Select(model_->RowOf(*select));
  rows_.SelectAnyRow();
  FitColumns();
  UpdateState();
}

void TaskListWindow::ChangeRuns(const std::function<void()>& work) {
  Guarded(work);
  Glance();
}

// A file that cannot be read now is told of when somebody wants something of it.
void TaskListWindow::Glance() {
  (void)FailureOf([this] {
    const std::int64_t count = parts_.runs.ChangeCount();
    const Instant now = parts_.control.Now();
    const bool written = count != std::exchange(change_count_, count);
    if (!written && now - told_ < kTimesTold && !model_->CountsSeconds()) return;
    told_ = now;
    if (!written) return model_->TellTime();
    model_->SetRuns(ReadRuns(parts_.runs));
    ShowRuns();
  });
}

// Columns grow with their contents but do not shrink, so that they stand still.
void TaskListWindow::ShowRuns() {
  fitting_ = true;
  for (const int column : {TaskTableModel::kNext, TaskTableModel::kLast}) {
    const int width = rows_.Table().columnWidth(column);
    if (set_by_hand_.contains(column)) continue;
    FitColumn(rows_.Table(), column, kWidestColumn);
    if (rows_.Table().columnWidth(column) < width) rows_.Table().setColumnWidth(column, width);
  }
  fitting_ = false;
  UpdateState();
}

// The unreadable value of a task may be its owner, so only administrators see its name.
void TaskListWindow::TellUnreadable(const std::vector<UnreadableTask>& tasks) {
  constexpr std::size_t kMostLines = 3;
  QStringList lines;
  for (const UnreadableTask& unreadable : tasks) {
    if (static_cast<std::size_t>(lines.size()) == kMostLines) break;
    const std::string number = std::to_string(unreadable.task.id);
    lines += ToQt(parts_.user.administrator
                      ? parts_.Text("list.unreadable", {InSentence(TaskName(parts_, unreadable.task)), number,
                                                        unreadable.column})
                      : parts_.Text("list.unreadableOther", {number, unreadable.column}));
  }
  if (tasks.size() > kMostLines)
    lines += parts_.Shown("list.unreadableMore", {std::to_string(tasks.size() - kMostLines)});
  TellProblem(*unreadable_, rows_.Table(), lines.join(u'\n'));
}

// Every column shows its content up to a limit, so that one long text does not push the others out. Widths
// set by the user stay.
void TaskListWindow::FitColumns() {
  fitting_ = true;
  for (int column = 0; column + 1 < TaskTableModel::kColumnCount; ++column) {
    if (!set_by_hand_.contains(column)) FitColumn(rows_.Table(), column, kWidestColumn);
  }
  fitting_ = false;
}

// If the list is empty, focuses the button that fills it.
void TaskListWindow::FocusList() {
  if (rows_.Shown().rowCount() > 0) {
    rows_.Table().setFocus();
  } else if (rows_.Field().text().isEmpty() && new_->isEnabled()) {
    findChild<QPushButton*>("new")->setFocus();
  } else {
    rows_.Field().setFocus();
  }
}

// Makes Enter press the focused button, as in a dialog.
void TaskListWindow::keyPressEvent(QKeyEvent* event) {
  if (!PressesButton(*this, *event)) QWidget::keyPressEvent(event);
}

bool TaskListWindow::Guarded(const std::function<void()>& work) {
  return DoOrTell(parts_.state, "list.failed", work);
}

bool TaskListWindow::RefreshRights() {
  bool known = false;
  return Guarded([&] { known = RefreshUser(parts_.state, parts_.tables, parts_.user); }) &&
         AllowedOrTell(known, "rights.noUser");
}

bool TaskListWindow::AllowedOrTell(bool allowed, std::string_view text,
                                   const std::vector<std::string>& parameters) {
  if (allowed) return true;
  TellUser(parts_.state, text, parameters, message_box::kOkInformation);
  Reload();
  return false;
}

std::optional<TaskRecord> TaskListWindow::Selected() {
  const int row = rows_.SelectedRow();
  if (row < 0 || !RefreshRights()) return std::nullopt;
  std::optional<TaskRecord> task;
  if (!Guarded([&] { task = parts_.storage.Load(model_->Task(row).id); })) return std::nullopt;
  const bool seen = task && May(parts_.user, *task, TaskRight::kView);
  return AllowedOrTell(seen, task ? "list.mayNotView" : "list.gone") ? task : std::nullopt;
}

std::optional<TaskRecord> TaskListWindow::SelectedFor(TaskRight right, std::string_view refusal) {
  auto task = Selected();
  if (task && !AllowedOrTell(May(parts_.user, *task, right), refusal, {InSentence(TaskName(parts_, *task))}))
    task.reset();
  return task;
}

bool TaskListWindow::MayCreate() const {
  return MayCreatePersonal(parts_.user) || MayCreateShared(parts_.user);
}

void TaskListWindow::New() {
  if (RefreshRights() && AllowedOrTell(MayCreate(), "list.mayNotCreate"))
    Open({}, page_identifier::kAutoTaskType);
}

void TaskListWindow::Edit() {
  if (const auto task = SelectedFor(TaskRight::kEdit, "list.mayNotEdit"))
    Open(*task, page_identifier::kAutoTaskType);
}

// A copy has no schedule, because nobody wants two tasks that do the same at the same time. A personal task's
// copy belongs to its owner, too, so that nothing personal becomes shared by accident.
TaskRecord TaskListWindow::CopyOf(TaskRecord task) const {
  if (task.owner.empty() && !MayCreateShared(parts_.user)) {
    task.owner = parts_.user.id;
    task.permissions.reset();
  }
  task.id = task.version = 0;
  TakeFromManager(task);
  if (!task.uses_language_tags) task.name = parts_.Text("list.duplicateName", {task.name});
  return task;
}

// Stores the copy at once; it needs no input.
void TaskListWindow::Duplicate() {
  const auto task = Selected();
  if (!task) return;
  std::int64_t copy = 0;
  if (Guarded([&] { copy = parts_.storage.Save(CopyOf(*task), parts_.state.Now()).id; })) Reload(copy);
}

// The answer does not apply to a task that was changed after the question: it is shown, and the question is
// asked again.
void TaskListWindow::Delete() {
  bool changed = false;
  int shown_row = 0;
  do {
    const auto task = SelectedFor(TaskRight::kDelete, "list.mayNotDelete");
    if (!task) return;
    const char* text = changed ? "list.deleteChangedQuestion" : "list.deleteQuestion";
    const WarningQuestion question{parts_.Text(text, {InSentence(TaskName(parts_, *task))}), "button.yes",
                                   "button.no"};
    if (!IsSure(parts_.state.texts, question, *this)) return;
    shown_row = rows_.Table().selectionModel()->selectedRows().constFirst().row();
    changed = false;
    const bool tried = Guarded([&] {
      try {
        parts_.storage.Delete(task->id, task->version);
      } catch (const TaskConflict&) {
        changed = true;
      }
    });
    if (!tried) return;
    Reload();
  } while (changed);
  FocusList();
  rows_.Table().selectRow(std::min(shown_row, rows_.Shown().rowCount() - 1));
  UpdateState();
}

// An imported task was configured where it came from, so the wizard asks only for its details.
void TaskListWindow::Import() {
  if (!RefreshRights() || !AllowedOrTell(MayCreate(), "list.mayNotCreate")) return;
  const auto task = ImportTask(parts_, this);
  if (!task) return;
  Open(*task, page_identifier::kDetails,
       {{store_key::kImporting, true}, {store_key::kPersonalTask, !task->owner.empty()}});
}

void TaskListWindow::Export() {
  if (const auto task = Selected()) ExportTask(parts_, *task, this);
}

// Changes apply immediately to the current user.
void TaskListWindow::EditUsers() {
  if (!RefreshRights() || !AllowedOrTell(parts_.user.administrator, "list.mayNotEditUsers")) return;
  Guarded([this] { UsersDialog(parts_.state.texts, parts_.tables, parts_.user.id, this).exec(); });
  Reload();
}

void TaskListWindow::Open(const TaskRecord& task, const std::string& page,
                          std::map<std::string, Value> entries) {
  const bool imported = entries.contains(store_key::kImporting);
  entries.merge(StartEditing(parts_.state, parts_.user, task));
  auto* window = new WizardWindow(parts_, task, entries, this);
  window->setAttribute(Qt::WA_DeleteOnClose);
  connect(window, &QDialog::finished, this, [this, window, imported](int result) {
    StopEditing(parts_.state, parts_.user);
    const TaskRecord saved = window->Wizard().Saved();
    if (result == QDialog::Accepted) Reload(saved.id);
    wizard_ = nullptr;
    activateWindow();  // even if a question was closed together with the wizard
    FocusList();
    // What was imported just now is shown in full at once; it can wait, and then stays paused.
    if (result == QDialog::Accepted && imported && saved.held) commands_.Release();
  });
  if (!window->Start(page)) {
    delete window;
    StopEditing(parts_.state, parts_.user);
    return;
  }
  wizard_ = window;
  window->open();
}

}  // namespace plovix::app
