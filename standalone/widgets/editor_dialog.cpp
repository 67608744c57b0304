#include "editor_dialog.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/tasks/merge_rows.h>

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

#include "editor_area.h"
#include "message_boxes.h"
#include "qt_text.h"

namespace plovix::app {
namespace {

// The style tints the focused cell, including its text, as if it were disabled; highlighting the row is
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

// Inside an editor, the window grows with the label.
void TellProblem(QLabel& label, QWidget& editor, const QString& text) {
  qt::TellProblem(label, editor, text);
  QWidget* window = label.window();
  auto* dialog = dynamic_cast<EditorDialog*>(window);
  if (text.isEmpty() || dialog == nullptr || !window->isVisible()) return;
  dialog->MakeRoomFor(label);
}

EditorDialog::EditorDialog(const TextTable& texts, const std::string& title, QWidget* parent)
    : QDialog(parent), texts_(texts), area_(new EditorArea) {
  qt::SetTitle(*this, ToQt(title));
  auto* all = new QVBoxLayout(this);
  all->addWidget(area_, 1);
}

QVBoxLayout* EditorDialog::Rows() const {
  return area_->Rows();
}

// Before it is shown it takes the needed size anyway.
void EditorDialog::MakeRoomFor(QWidget& widget) {
  layout()->activate();
  ResizeOnScreen(*this, size() + QSize(0, area_->MissingHeight()));
  layout()->activate();
  area_->ensureWidgetVisible(&widget);
}

QString EditorDialog::Text(std::string_view key, const std::vector<std::string>& parameters) const {
  return ToQt(texts_.Host(key, parameters));
}

QString EditorDialog::Caption(std::string_view key) const {
  return Text(key).remove(u'&');
}

QLabel* EditorDialog::NewNote(std::string_view key) const {
  QLabel* note = qt::NewWrappedLabel(Text(key));
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
  layout()->addWidget(buttons_);  // first: only a dialog's child can become its default button
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
  if (enter && event->modifiers().testFlag(Qt::ControlModifier)) {
    accept();
  } else if (enter && button != nullptr) {
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

bool EditorDialog::TryToStore(std::string_view key, QLabel& place, const std::function<void()>& work,
                              const std::function<void(const std::vector<std::string>& rows)>& conflict) {
  std::vector<std::string> rows;
  const bool tried = Try(key, place, [&] {
    try {
      work();
    } catch (const RowConflict& refused) {
      rows = refused.Rows();
    }
  });
  if (tried && !rows.empty()) Try(key, place, [&] { conflict(rows); });
  return tried && rows.empty();
}

void EditorDialog::reject() {
  if (Changed() && !IsSure(texts_, FromQt(qt::TitleOf(*this)), DiscardQuestion(texts_), this)) return;
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
