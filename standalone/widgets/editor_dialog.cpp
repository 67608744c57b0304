#include "editor_dialog.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/tasks/merge_rows.h>

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "editor_area.h"
#include "message_boxes.h"
#include "pieces.h"
#include "qt_text.h"

namespace plovix::app {

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
  return qt::NewWrappedLabel(Text(key));
}

QPushButton* EditorDialog::NewButton(std::string_view key, std::function<void()> action) {
  QPushButton* button = app::NewButton(Text(key), std::move(action));
  button->setObjectName(ToQt(key));
  return button;
}

void EditorDialog::AddOkAndCancel(std::string_view ok_key, std::string_view cancel_key) {
  buttons_ = new QDialogButtonBox;
  layout()->addWidget(buttons_);  // first: only a dialog's child can become its default button
  auto* ok = buttons_->addButton(Text(ok_key), QDialogButtonBox::AcceptRole);
  auto* cancel = buttons_->addButton(Text(cancel_key), QDialogButtonBox::RejectRole);
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
  if (IsEnter(*event) && event->modifiers().testFlag(Qt::ControlModifier)) {
    accept();
  } else if (!PressesButton(*this, *event)) {
    QDialog::keyPressEvent(event);
  }
}

void EditorDialog::done(int result) {
  QDialog::done(result);
  if (parentWidget() != nullptr) parentWidget()->activateWindow();
}

bool EditorDialog::Try(std::string_view key, QLabel& place, const std::function<void()>& work) {
  TellProblem(place, *this, {});
  const auto failure = FailureOf(work);
  if (failure) TellProblem(place, *this, Text(key, {failure->Description()}));
  return !failure;
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
  if (!Changed() || IsSure(texts_, DiscardQuestion(texts_), *this)) QDialog::reject();
}

}  // namespace plovix::app
