#include "task_list_window.h"

#include <plovix/framework/page_identifiers.h>
#include <plovix/standalone/editors/users_dialog.h>
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/accessibility.h>
#include <plovix/surfaces/qt/plain_text.h>
#include <plovix/surfaces/qt/theme.h>

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

#include "task_exchange.h"
#include "wizard_window.h"

namespace plovix::app {
namespace {

constexpr int kCharactersWide = 180;
constexpr int kWidestColumn = 40;  // characters
constexpr int kLinesHigh = 30;
constexpr int kRowsMeasured = 100;  // for the width of a column

}  // namespace

TaskListWindow::TaskListWindow(const AppParts& parts)
    : parts_(parts), model_(new TaskTableModel(parts, this)), shown_(new QSortFilterProxyModel(this)) {
  qt::AnnounceAs(*this, QAccessible::Window);
  qt::SetTitle(*this, ToQt(parts_.Text("list.title")));
  new QVBoxLayout(this);
  BuildFilter();
  BuildTable();
  BuildButtons();
  ResizeToText(*this, qt::PageFont(), kCharactersWide, kLinesHigh);
  const auto shortcut = [this](const QKeySequence& keys, auto action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  shortcut(QKeySequence::New, &TaskListWindow::New);
  shortcut(QKeySequence::Find, [this] {
    filter_->setFocus();
    filter_->selectAll();
  });
  shortcut(QKeySequence::Refresh, [this] { Reload(); });
  Reload();
  FocusList();
}

void TaskListWindow::BuildFilter() {
  auto* row = new QHBoxLayout;
  filter_ = new QLineEdit;
  filter_->setObjectName("filter");
  filter_->setClearButtonEnabled(true);
  filter_->setPlaceholderText(ToQt(parts_.Text("list.filterHint")));
  filter_->installEventFilter(this);
  QLabel* label = qt::NewLabel(ToQt(parts_.Text("list.filter")));
  label->setBuddy(filter_);
  row->addWidget(label);
  row->addWidget(filter_);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) {
    shown_->setFilterFixedString(text);
    if (SelectedRow() < 0) table_->selectRow(0);
    UpdateState();
  });
}

void TaskListWindow::BuildTable() {
  shown_->setSourceModel(model_);
  shown_->setFilterKeyColumn(-1);
  shown_->setFilterRole(TaskTableModel::kSearchRole);
  shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  shown_->setSortRole(TaskTableModel::kSortRole);
  shown_->setSortLocaleAware(true);
  table_ = new QTableView;
  table_->setObjectName("tasks");
  table_->setAccessibleName(qt::TitleOf(*this));
  table_->setModel(shown_);
  PrepareRowTable(*table_);
  table_->setSortingEnabled(true);
  table_->sortByColumn(TaskTableModel::kName, Qt::AscendingOrder);
  table_->installEventFilter(this);
  table_->horizontalHeader()->setResizeContentsPrecision(kRowsMeasured);
  connect(table_->horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
    if (!fitting_) set_by_hand_.insert(column);
  });
  connect(table_, &QTableView::doubleClicked, this, &TaskListWindow::Edit);
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &TaskListWindow::UpdateState);
  hint_ = qt::NewWrappedLabel();
  hint_->setAlignment(Qt::AlignCenter);
  auto* stack = new QStackedLayout;
  stack->addWidget(table_);
  stack->addWidget(hint_);
  static_cast<QVBoxLayout*>(layout())->addLayout(stack, 1);
  unreadable_ = NewProblemLabel();
  layout()->addWidget(unreadable_);
}

void TaskListWindow::BuildButtons() {
  auto* row = new QHBoxLayout;
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  new_ = AddButton("list.new", "new", &TaskListWindow::New);
  edit_ = AddButton("list.edit", "edit", &TaskListWindow::Edit);
  duplicate_ = AddButton("list.duplicate", "duplicate", &TaskListWindow::Duplicate);
  delete_ = AddButton("list.delete", "delete", &TaskListWindow::Delete);
  import_ = AddButton("list.import", "import", &TaskListWindow::Import);
  export_ = AddButton("list.export", "export", &TaskListWindow::Export);
  users_ = AddButton("list.users", "users", &TaskListWindow::EditUsers);
  row->addStretch();
  count_ = qt::NewLabel();
  row->addWidget(count_);
}

QPushButton* TaskListWindow::AddButton(std::string_view caption, const char* name,
                                       void (TaskListWindow::*action)()) {
  auto* button = new QPushButton(ToQt(parts_.Text(caption)));
  button->setObjectName(QString::fromLatin1(name));
  connect(button, &QPushButton::clicked, this, action);
  layout()->itemAt(layout()->count() - 1)->layout()->addWidget(button);
  return button;
}

bool TaskListWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent*>(event)->key();
  if (watched == filter_) {
    if (key == Qt::Key_Escape) filter_->clear();
    if (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter) FocusList();
    return key == Qt::Key_Escape || key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter;
  }
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    Edit();
    return true;
  }
  if (key == Qt::Key_Delete) {
    Delete();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void TaskListWindow::Reload(std::optional<std::int64_t> select) {
  const int row = SelectedRow();
  if (!select && row >= 0) select = model_->Task(row).id;
  Guarded([this] {
    std::vector<UnreadableTask> unreadable;
    auto tasks = parts_.storage.ListReadable([&](const auto& task) { unreadable.push_back(task); });
    known_user_ = RefreshUser(parts_.state, parts_.tables, parts_.user);
    TellUnreadable(unreadable);
    std::erase_if(
        tasks, [&](const auto& task) { return !known_user_ || !May(parts_.user, task, TaskRight::kView); });
    model_->SetTasks(std::move(tasks));
  });
  if (select) SelectTask(*select);
  if (SelectedRow() < 0) table_->selectRow(0);
  FitColumns();
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
                      ? parts_.Text("list.unreadable",
                                    {NameInSentence(parts_, unreadable.task), number, unreadable.column})
                      : parts_.Text("list.unreadableOther", {number, unreadable.column}));
  }
  if (tasks.size() > kMostLines)
    lines += ToQt(parts_.Text("list.unreadableMore", {std::to_string(tasks.size() - kMostLines)}));
  TellProblem(*unreadable_, *table_, lines.join(u'\n'));
}

// Every column shows its content up to a limit, so that one long text does not push the others out. Widths
// set by the user stay.
void TaskListWindow::FitColumns() {
  fitting_ = true;
  const int widest = fontMetrics().averageCharWidth() * kWidestColumn;
  for (int column = 0; column + 1 < TaskTableModel::kColumnCount; ++column) {
    if (set_by_hand_.contains(column)) continue;
    table_->resizeColumnToContents(column);
    table_->setColumnWidth(column, std::min(table_->columnWidth(column), widest));
  }
  fitting_ = false;
}

// If the list is empty, focuses the button that fills it.
void TaskListWindow::FocusList() {
  if (shown_->rowCount() > 0) {
    table_->setFocus();
  } else if (filter_->text().isEmpty() && new_->isEnabled()) {
    new_->setFocus();
  } else {
    filter_->setFocus();
  }
}

// Makes Enter press the focused button, as in a dialog.
void TaskListWindow::keyPressEvent(QKeyEvent* event) {
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  if (button != nullptr && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
    button->click();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void TaskListWindow::SelectTask(std::int64_t id) {
  const int row = model_->RowOf(id);
  if (row < 0) return;
  // A task that has just been saved must be visible, even if the filter would hide it.
  if (!shown_->mapFromSource(model_->index(row, 0)).isValid()) filter_->clear();
  const QModelIndex index = shown_->mapFromSource(model_->index(row, 0));
  table_->selectRow(index.row());
  table_->scrollTo(index);
}

int TaskListWindow::SelectedRow() const {
  const QModelIndexList rows = table_->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : shown_->mapToSource(rows.constFirst()).row();
}

void TaskListWindow::UpdateState() {
  const bool selected = SelectedRow() >= 0;
  const auto may = [&](TaskRight right) {
    return selected && May(parts_.user, model_->Task(SelectedRow()), right);
  };
  edit_->setEnabled(may(TaskRight::kEdit));
  delete_->setEnabled(may(TaskRight::kDelete));
  const auto may_copy = [this] {
    const TaskRecord copy = CopyOf(model_->Task(SelectedRow()));
    return !RefusalOf(parts_.user, nullptr, &copy);
  };
  duplicate_->setEnabled(selected && may_copy());
  export_->setEnabled(selected);
  for (QPushButton* button : {new_, import_}) button->setEnabled(MayCreate());
  users_->setEnabled(parts_.user.administrator);
  const int all = model_->rowCount();
  const int visible = shown_->rowCount();
  const auto* hint = !known_user_ ? "rights.noUser" : all == 0 ? "list.empty" : "list.noMatch";
  hint_->setText(ToQt(parts_.Text(hint)));
  static_cast<QStackedLayout*>(layout()->itemAt(1)->layout())
      ->setCurrentWidget(visible == 0 ? static_cast<QWidget*>(hint_) : static_cast<QWidget*>(table_));
  count_->setText(ToQt(
      visible == all ? parts_.Text("list.count", {std::to_string(all)})
                     : parts_.Text("list.countFiltered", {std::to_string(visible), std::to_string(all)})));
}

bool TaskListWindow::Guarded(const std::function<void()>& work) {
  return DoOrTell(parts_, "list.failed", work);
}

bool TaskListWindow::RefreshRights() {
  bool known = false;
  return Guarded([&] { known = RefreshUser(parts_.state, parts_.tables, parts_.user); }) &&
         AllowedOrTell(known, "rights.noUser");
}

bool TaskListWindow::AllowedOrTell(bool allowed, std::string_view text,
                                   const std::vector<std::string>& parameters) {
  if (allowed) return true;
  parts_.state.dialogs->MessageBox(parts_.Text(text, parameters), message_box::kOkInformation,
                                   parts_.state.title);
  Reload();
  return false;
}

std::optional<TaskRecord> TaskListWindow::Selected() {
  const int row = SelectedRow();
  if (row < 0 || !RefreshRights()) return std::nullopt;
  std::optional<TaskRecord> task;
  if (!Guarded([&] { task = parts_.storage.Load(model_->Task(row).id); })) return std::nullopt;
  const bool seen = task && May(parts_.user, *task, TaskRight::kView);
  return AllowedOrTell(seen, task ? "list.mayNotView" : "list.gone") ? task : std::nullopt;
}

bool TaskListWindow::MayCreate() const {
  return MayCreatePersonal(parts_.user) || MayCreateShared(parts_.user);
}

void TaskListWindow::New() {
  if (RefreshRights() && AllowedOrTell(MayCreate(), "list.mayNotCreate"))
    Open({}, page_identifier::kAutoTaskType);
}

void TaskListWindow::Edit() {
  const auto task = Selected();
  if (task && AllowedOrTell(May(parts_.user, *task, TaskRight::kEdit), "list.mayNotEdit",
                            {NameInSentence(parts_, *task)}))
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
  task.allow_automation_manager = false;
  task.processing_mode = processing_mode::kEveryTime;
  task.recurrence.reset();
  task.schedule_start.reset();
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
    const auto task = Selected();
    if (!task || !AllowedOrTell(May(parts_.user, *task, TaskRight::kDelete), "list.mayNotDelete",
                                {NameInSentence(parts_, *task)}))
      return;
    const char* text = changed ? "list.deleteChangedQuestion" : "list.deleteQuestion";
    const WarningQuestion question{parts_.Text(text, {NameInSentence(parts_, *task)}), "button.yes",
                                   "button.no"};
    if (!IsSure(parts_.state.texts, parts_.state.title, question, this)) return;
    shown_row = table_->selectionModel()->selectedRows().constFirst().row();
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
  table_->selectRow(std::min(shown_row, shown_->rowCount() - 1));
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
  entries.merge(StartEditing(parts_.state, parts_.user, task));
  auto* window = new WizardWindow(parts_, task, entries, this);
  window->setAttribute(Qt::WA_DeleteOnClose);
  connect(window, &QDialog::finished, this, [this, window](int result) {
    StopEditing(parts_.state, parts_.user);
    if (result == QDialog::Accepted) Reload(window->Wizard().Saved().id);
    wizard_ = nullptr;
    activateWindow();  // even if a question was closed together with the wizard
    FocusList();
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
