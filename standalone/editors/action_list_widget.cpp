#include "action_list_widget.h"

#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "action_dialog.h"

namespace plovix::app {

ActionListWidget::ActionListWidget(VeloActionList& list, const TextTable& texts, QWidget* parent)
    : QWidget(parent), list_(list), texts_(texts), rows_(new QListWidget), hint_(qt::NewWrappedLabel()) {
  auto* columns = new QHBoxLayout(this);
  columns->setContentsMargins({});
  auto* left = new QVBoxLayout;
  left->addWidget(rows_);
  left->addWidget(hint_);
  columns->addLayout(left, 1);
  auto* buttons = new QVBoxLayout;
  columns->addLayout(buttons);
  hint_->setText(ToQt(texts_.Host("action.list.empty")));
  rows_->setAccessibleName(ToQt(texts_.Host("action.list.name")));
  rows_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  rows_->setTextElideMode(Qt::ElideRight);
  rows_->setSpacing(fontMetrics().lineSpacing() / 8);
  rows_->installEventFilter(this);
  setFocusProxy(rows_);
  AddButton("action.list.add", &ActionListWidget::Add);
  edit_ = AddButton("action.list.edit", &ActionListWidget::Edit);
  remove_ = AddButton("action.list.remove", &ActionListWidget::Remove);
  up_ = AddButton("action.list.up", &ActionListWidget::MoveUp);
  down_ = AddButton("action.list.down", &ActionListWidget::MoveDown);
  buttons->addStretch();
  connect(rows_, &QListWidget::itemSelectionChanged, this, &ActionListWidget::UpdateButtons);
  connect(rows_, &QListWidget::itemDoubleClicked, this, &ActionListWidget::Edit);
  list_.OnChanged([this] { Redraw(); });
  Redraw();
  SelectRow(0);
}

ActionListWidget::~ActionListWidget() {
  list_.OnChanged(nullptr);
}

QPushButton* ActionListWidget::AddButton(std::string_view caption, void (ActionListWidget::*action)()) {
  auto* button = new QPushButton(ToQt(texts_.Host(caption)));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, action);
  static_cast<QVBoxLayout*>(layout()->itemAt(1)->layout())->addWidget(button);
  return button;
}

// The keys of the list; a moved row keeps the focus, so that it can be moved further.
bool ActionListWidget::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool alt = key->modifiers().testFlag(Qt::AltModifier);
  if (key->modifiers().testFlag(Qt::ControlModifier)) return false;  // Ctrl+Enter is the window's
  void (ActionListWidget::*action)() = nullptr;
  switch (key->key()) {
    case Qt::Key_Up:
      action = alt ? &ActionListWidget::MoveUp : nullptr;
      break;
    case Qt::Key_Down:
      action = alt ? &ActionListWidget::MoveDown : nullptr;
      break;
    case Qt::Key_Delete:
      action = &ActionListWidget::Remove;
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      action = rows_->currentRow() >= 0 ? &ActionListWidget::Edit : &ActionListWidget::Add;
      break;
    default:
      break;
  }
  if (action == nullptr) return QWidget::eventFilter(watched, event);
  (this->*action)();
  return true;
}

void ActionListWidget::Redraw() {
  const int row = rows_->currentRow();
  rows_->clear();
  for (const ActionRecord& action : list_.Rows()) {
    const QString text = RowText(action);
    auto* row_item = new QListWidgetItem(qt::Shortened(text, qt::kLongestShown), rows_);
    row_item->setToolTip(qt::ToolTip(text));
  }
  hint_->setVisible(list_.Rows().empty());
  SelectRow(row);
}

void ActionListWidget::SelectRow(int row) {
  rows_->setCurrentRow(std::min(row, rows_->count() - 1));
  UpdateButtons();
}

void ActionListWidget::UpdateButtons() {
  const int row = rows_->currentRow();
  const auto enable = [this](QPushButton* button, bool enabled) {
    if (!enabled && button->hasFocus()) rows_->setFocus();  // otherwise the focus would leave the list
    button->setEnabled(enabled);
  };
  enable(edit_, row >= 0);
  enable(remove_, row >= 0);
  enable(up_, row > 0);
  enable(down_, row >= 0 && row + 1 < rows_->count());
}

void ActionListWidget::Add() {
  const auto kinds = list_.OfferedKinds();
  if (kinds.empty()) {
    Tell(texts_, texts_.Host("action.edit.add"), texts_.Host("action.list.none"), this);
    return;
  }
  ActionDialog dialog(texts_, texts_.Host("action.edit.add"), kinds, NewAction(*kinds.front()), this);
  if (dialog.exec() != QDialog::Accepted) return;
  list_.Append(dialog.Action());
  SelectRow(rows_->count() - 1);
}

void ActionListWidget::Edit() {
  const int row = rows_->currentRow();
  if (row < 0) return;
  const auto position = static_cast<std::size_t>(row);
  ActionDialog dialog(texts_, texts_.Host("action.edit.change"), {}, list_.Rows().at(position), this);
  if (dialog.exec() == QDialog::Accepted) list_.Replace(position, dialog.Action());
}

void ActionListWidget::Remove() {
  if (rows_->currentRow() >= 0) list_.Remove(static_cast<std::size_t>(rows_->currentRow()));
}

void ActionListWidget::MoveUp() {
  const int row = rows_->currentRow();
  if (row >= 0 && list_.MoveUp(static_cast<std::size_t>(row))) SelectRow(row - 1);
}

void ActionListWidget::MoveDown() {
  const int row = rows_->currentRow();
  if (row >= 0 && list_.MoveDown(static_cast<std::size_t>(row))) SelectRow(row + 1);
}

QString ActionListWidget::RowText(const ActionRecord& action) const {
  const ActionKind* kind = FindActionKind(action.kind);
  if (kind == nullptr)
    return ToQt(action.name.empty() ? texts_.Host("action.list.unknown", {action.kind}) : action.name);
  const std::string what = action.name.empty() ? texts_.Host(kind->caption) : action.name;
  const auto setting = action.settings.find(std::string(kind->fields.front().key));
  if (setting == action.settings.end()) return ToQt(what);
  return ToQt(texts_.Host("action.list.row", {what, setting->second})).simplified();
}

}  // namespace plovix::app
