#include "history_window.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/pieces.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/standalone/widgets/tables.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedLayout>
#include <QTableView>
#include <algorithm>
#include <array>

#include "run_details_window.h"
#include "run_table_model.h"

namespace plovix::app {
namespace {

constexpr std::chrono::milliseconds kLookAgain{1000};
constexpr int kRest = 20;  // times as long as a look took, until the next one
constexpr std::chrono::milliseconds kTypingPause{200};
constexpr int kMoreRows = 200;  // to show before reading stops, and each time that the end is reached
constexpr int kHistoryWide = 150;
constexpr int kHistoryHigh = 28;
constexpr int kWidestCell = 40;  // characters
constexpr int kMeasuredRows = 100;

struct StateGroup {
  const char* caption;
  std::vector<RunState> states;  // empty: any
};
std::array<StateGroup, 3> StateGroups() {
  using enum RunState;
  return {{{"history.states.all", {}},
           {"history.states.wrong", {kFailed, kPartly, kMissed, kInterrupted}},
           {"history.states.open", {kWaiting, kRunning}}}};
}

}  // namespace

HistoryWindow::HistoryWindow(RunParts parts, std::optional<std::int64_t> task, QWidget* parent)
    : QDialog(parent),
      parts_(std::move(parts)),
      of_one_task_(task.has_value()),
      model_(new RunTableModel(parts_, task, this)) {
  const std::string name = task ? parts_.name(*task).value_or("") : "";
  qt::SetTitle(*this, task ? parts_.Shown("history.titleOf", {name}) : parts_.Shown("history.title"));
  new QVBoxLayout(this);
  BuildFilter();
  BuildTable();
  BuildButtons();
  ResizeToText(*this, font(), kHistoryWide, kHistoryHigh);
  for (QTimer* timer : {&filling_, &typing_}) timer->setSingleShot(true);
  typing_.setInterval(kTypingPause);
  typing_.callOnTimeout(this, [this] { Look(); });
  filling_.callOnTimeout(this, [this] { Fill(); });
  timer_.callOnTimeout(this, [this] {
    if (isVisible()) Refresh();
  });
  timer_.start(kLookAgain);
  Look();
  model_->rowCount() > 0 ? table_->setFocus() : states_->setFocus();
}

void HistoryWindow::BuildFilter() {
  states_ = new QComboBox;
  states_->setObjectName("states");
  for (const StateGroup& group : StateGroups()) states_->addItem(parts_.Shown(group.caption));
  search_ = new QLineEdit;
  search_->setObjectName("search");
  search_->setClearButtonEnabled(true);
  search_->setPlaceholderText(parts_.Shown(of_one_task_ ? "history.searchReasonHint" : "history.searchHint"));
  connect(states_, &QComboBox::activated, this, [this] { Look(); });
  connect(search_, &QLineEdit::textChanged, &typing_, qOverload<>(&QTimer::start));
  auto* row = NewRow({NewCaption(parts_.Shown("history.states"), *states_), states_,
                      NewCaption(parts_.Shown("history.search"), *search_), search_});
  row->setStretch(3, 1);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void HistoryWindow::BuildTable() {
  table_ = new QTableView;
  table_->setObjectName("runs");
  table_->setModel(model_);
  table_->setAccessibleName(qt::TitleOf(*this));
  PrepareRowTable(*table_);
  table_->setColumnHidden(RunTableModel::kTask, of_one_task_);
  table_->horizontalHeader()->setResizeContentsPrecision(kMeasuredRows);
  table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  connect(table_, &QTableView::doubleClicked, this, [this] { OpenDetails(); });
  connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { Update(); });
  connect(table_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
    if (value < table_->verticalScrollBar()->maximum() || !model_->HasMore()) return;
    wanted_ = model_->rowCount() + kMoreRows;
    filling_.start(0);
  });
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) OnKey(*table_, key, [this] { OpenDetails(); });
  hint_ = qt::NewWrappedLabel();
  hint_->setAlignment(Qt::AlignCenter);
  stack_ = new QStackedLayout;
  stack_->addWidget(table_);
  stack_->addWidget(hint_);
  static_cast<QVBoxLayout*>(layout())->addLayout(stack_, 1);
}

void HistoryWindow::BuildButtons() {
  problem_ = NewProblemLabel();
  count_ = qt::NewWrappedLabel();
  details_ = NewButton(parts_.Shown("history.details"), [this] { OpenDetails(); });
  details_->setObjectName("details");
  auto* close = NewButton(parts_.Shown("history.close"), [this] { this->close(); });
  close->setObjectName("close");
  auto* column = static_cast<QVBoxLayout*>(layout());
  column->addWidget(problem_);
  auto* row = NewRow({details_, count_, close});
  row->setStretch(1, 1);
  column->addLayout(row);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
    search_->setFocus();
    search_->selectAll();
  });
  connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, this, [this] { Look(); });
}

void HistoryWindow::Look() {
  const StateGroup group = StateGroups().at(static_cast<std::size_t>(states_->currentIndex()));
  wanted_ = kMoreRows;
  Change([&] { model_->Look(group.states, search_->text().trimmed()); });
  for (int column = 0; column + 1 < RunTableModel::kColumnCount; ++column)
    if (!table_->isColumnHidden(column)) FitColumn(*table_, column, kWidestCell);
  filling_.start(0);
}

void HistoryWindow::Fill() {
  if (!model_->HasMore() || model_->rowCount() >= wanted_) return;
  Change([this] { model_->ReadOn(); });
  if (problem_->isHidden()) filling_.start(0);
}

// A look that takes long is repeated less often.
void HistoryWindow::Refresh() {
  QElapsedTimer took;
  took.start();
  Change([this] { model_->Refresh(); });
  timer_.setInterval(std::max(kLookAgain, std::chrono::milliseconds(kRest * took.elapsed())));
}

// New runs come in above; who reads further down goes on reading the same rows.
void HistoryWindow::Change(const std::function<void()>& change) {
  const std::int64_t selected = Selected();
  const int top = table_->rowAt(0);
  const std::int64_t first = top > 0 ? model_->At(top).run.id : 0;
  const auto failure = FailureOf(change);
  TellProblem(*problem_, *table_,
              failure ? parts_.Shown("history.unreadable", {failure->Description()}) : QString());
  if (const int row = model_->RowOf(first); first != 0 && row >= 0 && table_->rowAt(0) != row)
    table_->scrollTo(model_->index(row, 0), QAbstractItemView::PositionAtTop);
  if (Selected() == 0 && model_->rowCount() > 0) {
    const int row = model_->RowOf(selected);
    table_->selectionModel()->setCurrentIndex(
        model_->index(std::max(row, 0), 0), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
  Update();
}

std::int64_t HistoryWindow::Selected() const {
  const QModelIndexList rows = table_->selectionModel()->selectedRows();
  return rows.isEmpty() ? 0 : model_->At(rows.constFirst().row()).run.id;
}

const char* HistoryWindow::WhyEmpty() const {
  if (model_->HasMore()) return "history.reading";
  if (!search_->text().trimmed().isEmpty()) return "history.noMatch";
  if (states_->currentIndex() != 0) return "history.noneInState";
  return of_one_task_ ? "history.emptyTask" : "history.empty";
}

void HistoryWindow::Update() {
  const int count = model_->rowCount();
  if (count == 0) hint_->setText(parts_.Shown(WhyEmpty()));
  stack_->setCurrentWidget(count == 0 ? static_cast<QWidget*>(hint_) : table_);
  details_->setEnabled(Selected() != 0);
  const std::string number = FromQt(QLocale().toString(count));
  const QString words =
      parts_.Shown(model_->HasMore() ? "history.countMore" : "history.count", {number, parts_.zone.Name()});
  if (count_->text() != words) count_->setText(words);
}

RunDetailsWindow* HistoryWindow::OpenDetails() {
  const std::int64_t run = Selected();
  if (run == 0) return nullptr;
  auto& window = open_[run];
  if (window == nullptr) {
    window = new RunDetailsWindow(parts_, model_->At(model_->RowOf(run)).run, this);
    window->setAttribute(Qt::WA_DeleteOnClose);
  }
  window->show();
  window->raise();
  window->activateWindow();
  return window;
}

// Enter presses the focused button; in the search it goes to the runs.
void HistoryWindow::keyPressEvent(QKeyEvent* event) {
  if (PressesButton(*this, *event)) return;
  if (IsEnter(*event) && focusWidget() == search_) return table_->setFocus();
  if (event->key() == Qt::Key_Escape && focusWidget() == search_ && !search_->text().isEmpty())
    return search_->clear();
  if (!IsEnter(*event)) QDialog::keyPressEvent(event);
}

void HistoryWindow::done(int result) {
  QDialog::done(result);
  if (parentWidget() != nullptr) parentWidget()->activateWindow();
}

}  // namespace plovix::app
