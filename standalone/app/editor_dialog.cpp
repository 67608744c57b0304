#include "editor_dialog.h"

#include <plovix/controls/failure.h>

#include <QAccessible>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>
#include <optional>

#include "qt_dialogs.h"
#include "qt_text.h"

namespace plovix::app {
namespace {

// The style tints the cell that has the focus, text and all, as if that were disabled; the chosen row says
// enough.
class RowDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->state.setFlag(QStyle::State_HasFocus, false);
  }
};

}  // namespace

QLabel* NewProblemLabel() {
  auto* label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  label->hide();
  return label;
}

void TellProblem(QLabel& label, QWidget& editor, const QString& text) {
  label.setText(text);
  label.setVisible(!text.isEmpty());
  editor.setAccessibleDescription(text);
  if (text.isEmpty()) return;
  QAccessibleEvent event(&label, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
  QWidget* window = label.window();
  if (!window->isVisible()) return;  // it takes the size it needs when it is shown
  window->layout()->activate();
  window->resize(
      window->size().expandedTo({window->width(), window->layout()->totalHeightForWidth(window->width())}));
}

EditorDialog::EditorDialog(const TextTable& texts, const std::string& title, QWidget* parent)
    : QDialog(parent), texts_(texts), rows_(new QVBoxLayout(this)) {
  setWindowTitle(ToQt(title));
}

QString EditorDialog::Text(std::string_view key, const std::vector<std::string>& parameters) const {
  return ToQt(texts_.Host(key, parameters));
}

QString EditorDialog::Caption(std::string_view key) const {
  return Text(key).remove(u'&');
}

QLabel* EditorDialog::NewNote(std::string_view key) const {
  auto* note = new QLabel(Text(key));
  note->setTextFormat(Qt::PlainText);
  note->setWordWrap(true);
  return note;
}

QPushButton* EditorDialog::NewButton(std::string_view key, std::function<void()> action) {
  auto* button = new QPushButton(Text(key));
  button->setObjectName(ToQt(key));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, std::move(action));
  return button;
}

void EditorDialog::AddOkAndCancel() {
  buttons_ = new QDialogButtonBox;
  rows_->addWidget(buttons_);  // first: only a dialog's child can become its default button
  auto* ok = buttons_->addButton(Text("button.ok"), QDialogButtonBox::AcceptRole);
  auto* cancel = buttons_->addButton(Text("button.cancel"), QDialogButtonBox::RejectRole);
  cancel->setAutoDefault(false);
  ok->setDefault(true);
  connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void EditorDialog::HideCancel() {
  for (QAbstractButton* button : buttons_->buttons())
    button->setVisible(buttons_->buttonRole(button) == QDialogButtonBox::AcceptRole);
}

void EditorDialog::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  if (enter && button != nullptr) {
    button->click();
  } else {
    QDialog::keyPressEvent(event);
  }
}

void EditorDialog::done(int result) {
  QDialog::done(result);
  if (parentWidget() != nullptr) parentWidget()->activateWindow();
}

void EditorDialog::OnKey(QWidget& widget, const QKeySequence& keys, std::function<void()> action) {
  auto* shortcut = new QShortcut(keys, &widget);
  shortcut->setContext(Qt::WidgetShortcut);
  connect(shortcut, &QShortcut::activated, this, std::move(action));
}

bool EditorDialog::Try(std::string_view key, QLabel& place, const std::function<void()>& work) {
  TellProblem(place, *this, {});
  std::optional<Failure> failure;
  try {
    work();
    return true;
  } catch (...) {
    failure = CurrentFailure();
  }
  TellProblem(place, *this, Text(key, {failure->Description()}));
  return false;
}

void EditorDialog::reject() {
  if (Changed() && !IsSure(texts_, FromQt(windowTitle()), DiscardQuestion(texts_), this)) return;
  QDialog::reject();
}

void PrepareTable(QTableView& table) {
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setTabKeyNavigation(false);
  table.setAlternatingRowColors(true);
  table.setShowGrid(false);
  table.verticalHeader()->hide();
  table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().lineSpacing() * 3 / 2);
  table.horizontalHeader()->setHighlightSections(false);
}

void PrepareRowTable(QTableView& table) {
  PrepareTable(table);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.setItemDelegate(new RowDelegate(&table));
  table.setWordWrap(false);
  table.horizontalHeader()->setStretchLastSection(true);
}

void PrepareTable(QTableWidget& table, const QStringList& columns) {
  table.setColumnCount(static_cast<int>(columns.size()));
  table.setHorizontalHeaderLabels(columns);
  PrepareTable(table);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table.horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  table.horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
}

}  // namespace plovix::app
