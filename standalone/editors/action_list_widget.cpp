#include "action_list_widget.h"

#include <plovix/standalone/widgets/message_boxes.h>
#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include "action_dialog.h"

namespace plovix::app {

ActionListWidget::ActionListWidget(VeloActionList& list, const TextTable& texts, QWidget* parent,
                                   Fields fields)
    : QWidget(parent),
      list_(list),
      texts_(texts),
      fields_(std::move(fields)),
      rows_(new QListWidget),
      hint_(qt::NewWrappedLabel()) {
  auto* columns = new QHBoxLayout(this);
  columns->setContentsMargins({});
  columns->addLayout(NewColumn({rows_, hint_}), 1);
  auto* buttons = new QVBoxLayout;
  columns->addLayout(buttons);
  BuildButtons(*buttons);
  hint_->setText(ToQt(texts_.Host("action.list.empty")));
  rows_->setAccessibleName(ToQt(texts_.Host("action.list.name")));
  rows_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  rows_->setTextElideMode(Qt::ElideRight);
  rows_->setSpacing(fontMetrics().lineSpacing() / 8);
  setFocusProxy(rows_);
  connect(rows_, &QListWidget::itemSelectionChanged, this, &ActionListWidget::UpdateButtons);
  connect(rows_, &QListWidget::itemDoubleClicked, this, &ActionListWidget::Edit);
  list_.OnChanged([this] { Redraw(); });
  Redraw();
  SelectRow(0);
}

ActionListWidget::~ActionListWidget() {
  list_.OnChanged(nullptr);
}

// A moved row keeps the focus, so that it can be moved on.
void ActionListWidget::BuildButtons(QBoxLayout& column) {
  const auto add = [&](std::string_view caption, std::function<void()> action) {
    QPushButton* button = NewButton(ToQt(texts_.Host(caption)), std::move(action));
    column.addWidget(button);
    return button;
  };
  add("action.list.add", [this] { Add(); });
  buttons_ = {.edit = add("action.list.edit", [this] { Edit(); }),
              .remove = add("action.list.remove", [this] { Remove(); }),
              .up = add("action.list.up", [this] { Move(-1); }),
              .down = add("action.list.down", [this] { Move(1); })};
  column.addStretch();
  OnKey(*rows_, QKeyCombination(Qt::ALT, Qt::Key_Up), [this] { Move(-1); });
  OnKey(*rows_, QKeyCombination(Qt::ALT, Qt::Key_Down), [this] { Move(1); });
  OnKey(*rows_, Qt::Key_Delete, [this] { Remove(); });
  for (const auto enter : {Qt::Key_Return, Qt::Key_Enter})
    OnKey(*rows_, enter, [this] { rows_->currentRow() >= 0 ? Edit() : Add(); });
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
  buttons_.Enable(*rows_, rows_->currentRow(), rows_->count());
}

void ActionListWidget::Add() {
  const auto kinds = list_.OfferedKinds();
  if (kinds.empty()) {
    Tell(texts_, texts_.Host("action.edit.add"), texts_.Host("action.list.none"), this);
    return;
  }
  ActionDialog dialog(texts_, texts_.Host("action.edit.add"), kinds, NewAction(*kinds.front()), this,
                      KnownFields());
  if (dialog.exec() != QDialog::Accepted) return;
  list_.Append(dialog.Action());
  SelectRow(rows_->count() - 1);
}

void ActionListWidget::Edit() {
  const int row = rows_->currentRow();
  if (row < 0) return;
  const auto position = static_cast<std::size_t>(row);
  ActionDialog dialog(texts_, texts_.Host("action.edit.change"), {}, list_.Rows().at(position), this,
                      KnownFields());
  if (dialog.exec() == QDialog::Accepted) list_.Replace(position, dialog.Action());
}

void ActionListWidget::Remove() {
  if (rows_->currentRow() >= 0) list_.Remove(static_cast<std::size_t>(rows_->currentRow()));
}

void ActionListWidget::Move(int by) {
  const int row = rows_->currentRow();
  const auto position = static_cast<std::size_t>(row);
  if (row >= 0 && (by < 0 ? list_.MoveUp(position) : list_.MoveDown(position))) SelectRow(row + by);
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
