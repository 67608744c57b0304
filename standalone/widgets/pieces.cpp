#include "pieces.h"

#include <plovix/surfaces/qt/plain_text.h>

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace plovix::app {
namespace {

template <class Layout>
Layout* NewLayout(Widgets widgets) {
  auto* layout = new Layout;
  for (QWidget* widget : widgets) widget != nullptr ? layout->addWidget(widget) : layout->addStretch();
  return layout;
}

// A filter and no shortcut: shortcuts sleep until their window is active, and keys that are already waiting
// when a dialog closes would go on to the window.
class KeyAction final : public QObject {
 public:
  KeyAction(QWidget& widget, QKeyCombination key, std::function<void()> action)
      : QObject(&widget), widget_(widget), key_(key), action_(std::move(action)) {}

 private:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || widget_.window()->focusWidget() != &widget_) return false;
    const auto& pressed = *static_cast<QKeyEvent*>(event);
    const auto modifiers = pressed.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier);
    if (QKeyCombination(modifiers, Qt::Key(pressed.key())) != key_) return false;
    action_();
    return true;
  }

  QWidget& widget_;
  QKeyCombination key_;
  std::function<void()> action_;
};

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

void OnKey(QWidget& widget, QKeyCombination key, std::function<void()> action) {
  widget.installEventFilter(new KeyAction(widget, key, std::move(action)));
}

}  // namespace plovix::app
