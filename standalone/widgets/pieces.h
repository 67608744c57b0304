// The small pieces of windows: buttons, captions, rows and columns of widgets, keys. Used by all windows and
// dialogs of the program.
#pragma once

#include <QBoxLayout>
#include <functional>
#include <initializer_list>

class QKeyEvent;
class QLabel;
class QPushButton;

namespace plovix::app {

// Never the default button: Enter in a field means what the window's own buttons say.
[[nodiscard]] QPushButton* NewButton(const QString& caption, std::function<void()> action);
// Enables a button beside a list. One that has the focus leaves it to the list, not to any other control.
void EnableBeside(QWidget& list, QPushButton& button, bool enabled);
// The buttons that most lists have, as far as the chosen row (-1: none) allows.
struct RowButtons {
  QPushButton *edit = nullptr, *remove = nullptr, *up = nullptr, *down = nullptr;
  void Enable(QWidget& list, int row, int rows) const;
};

// A caption whose mnemonic leads to the field; the field goes by that name.
[[nodiscard]] QLabel* NewCaption(const QString& text, QWidget& field);

// Beside each other, or one below the other; in place of nullptr all room that is left.
using Widgets = std::initializer_list<QWidget*>;
[[nodiscard]] QHBoxLayout* NewRow(Widgets widgets);
[[nodiscard]] QVBoxLayout* NewColumn(Widgets widgets);

[[nodiscard]] bool IsEnter(const QKeyEvent& key);
// Whether it is Enter on a button of the window: it has pressed that.
bool PressesButton(const QWidget& window, const QKeyEvent& key);
// A key of a table or list that holds while it has the focus.
void OnKey(QWidget& widget, QKeyCombination key, std::function<void()> action);

}  // namespace plovix::app
