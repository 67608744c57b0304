// What the editors of categories, permissions, language tags and users share: OK and Cancel, the question
// before changes are dropped, and problems told where they are.
#pragma once

#include <plovix/standalone/text/text_table.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QDialog>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class QDialogButtonBox;
class QLabel;
class QPushButton;
class QTableView;
class QTableWidget;
class QVBoxLayout;

namespace plovix::app {

using qt::NewProblemLabel;
// Says `text` in the label and to whoever cannot see it; an editor grows to show it. No text: no problem.
void TellProblem(QLabel& label, QWidget& editor, const QString& text);

class EditorArea;

class EditorDialog : public QDialog {
 public:
  // Whether Cancel would throw away something that was entered.
  [[nodiscard]] virtual bool Changed() const = 0;

  void reject() override;  // asks when something was changed
  // The window behind gets the focus back, also where a question was closed together with the dialog.
  void done(int result) override;
  // Grows, as far as the screen goes, and scrolls to the widget.
  void MakeRoomFor(QWidget& widget);

 protected:
  // Enter presses the button that has the focus, and OK from anywhere else; Ctrl+Enter always OK.
  void keyPressEvent(QKeyEvent* event) override;

  // `texts` outlives the dialog.
  EditorDialog(const TextTable& texts, const std::string& title, QWidget* parent);

  [[nodiscard]] const TextTable& Texts() const { return texts_; }
  [[nodiscard]] QString Text(std::string_view key, const std::vector<std::string>& parameters = {}) const;
  [[nodiscard]] QString Caption(std::string_view key) const;  // the text without its mnemonic
  // What the dialog shows above its buttons; scrolls where the screen is too small.
  [[nodiscard]] QVBoxLayout* Rows() const;
  [[nodiscard]] QLabel* NewNote(std::string_view key) const;
  // Never the default button: Enter in a field means OK.
  [[nodiscard]] QPushButton* NewButton(std::string_view key, std::function<void()> action);
  // Below Rows().
  void AddOkAndCancel();
  // For what is only looked at; Esc stays.
  void HideCancel();
  // Keys of a table or list that hold while it has the focus.
  void OnKey(QWidget& widget, const QKeySequence& keys, std::function<void()> action);
  // Does the work; a failure is told at `place` in the words of `key` with the failure's own. Gives back
  // whether it succeeded.
  bool Try(std::string_view key, QLabel& place, const std::function<void()>& work);
  // The same of work that stores rows. Where somebody else has changed the same ones, `conflict` gets their
  // keys instead; it tells the person.
  bool TryToStore(std::string_view key, QLabel& place, const std::function<void()>& work,
                  const std::function<void(const std::vector<std::string>& rows)>& conflict);

 private:
  const TextTable& texts_;
  EditorArea* area_;
  QDialogButtonBox* buttons_ = nullptr;
};

// What all tables of the program have in common: Tab leaves them, and cells are not typed in.
void PrepareTable(QTableView& table);
// A table in which a row is chosen.
void PrepareRowTable(QTableView& table);
// A table that is edited as a whole: Tab leaves it, the first column takes the room that is left.
void PrepareTable(QTableWidget& table, const QStringList& columns);

}  // namespace plovix::app
