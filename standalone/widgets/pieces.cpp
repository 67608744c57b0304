#include "pieces.h"

#include <plovix/surfaces/qt/plain_text.h>

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>

namespace plovix::app {
namespace {

template <class Layout>
Layout* NewLayout(Widgets widgets) {
  auto* layout = new Layout;
  for (QWidget* widget : widgets) widget != nullptr ? layout->addWidget(widget) : layout->addStretch();
  return layout;
}

}  // namespace

QPushButton* NewButton(const QString& caption, std::function<void()> action) {
  auto* button = new QPushButton(caption);
  button->setAutoDefault(false);
  QObject::connect(button, &QPushButton::clicked, button, std::move(action));
  return button;
}

void EnableBeside(QWidget& list, QPushButton& button, bool enabled) {
  if (!enabled && button.hasFocus()) list.setFocus();
  button.setEnabled(enabled);
}

void RowButtons::Enable(QWidget& list, int row, int rows) const {
  for (QPushButton* button : {edit, remove}) EnableBeside(list, *button, row >= 0);
  EnableBeside(list, *up, row > 0);
  EnableBeside(list, *down, row >= 0 && row + 1 < rows);
}

QLabel* NewCaption(const QString& text, QWidget& field) {
  QLabel* caption = qt::NewLabel(text);
  caption->setBuddy(&field);
  field.setAccessibleName(QString(text).remove(u'&'));
  return caption;
}

QHBoxLayout* NewRow(Widgets widgets) {
  return NewLayout<QHBoxLayout>(widgets);
}

QVBoxLayout* NewColumn(Widgets widgets) {
  return NewLayout<QVBoxLayout>(widgets);
}

bool IsEnter(const QKeyEvent& key) {
  return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

bool PressesButton(const QWidget& window, const QKeyEvent& key) {
  auto* button = qobject_cast<QPushButton*>(window.focusWidget());
  if (button == nullptr || !IsEnter(key)) return false;
  button->click();
  return true;
}

void OnKey(QWidget& widget, const QKeySequence& keys, std::function<void()> action) {
  auto* shortcut = new QShortcut(keys, &widget);
  shortcut->setContext(Qt::WidgetShortcut);
  QObject::connect(shortcut, &QShortcut::activated, &widget, std::move(action));
}

}  // namespace plovix::app
