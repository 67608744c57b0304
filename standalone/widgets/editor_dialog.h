// What all editors share: OK and Cancel, the question before changes are dropped, and problems told where
// they are.
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
class QVBoxLayout;

namespace plovix::app {

using qt::NewProblemLabel;
// Shows `text` in the label and announces it to assistive technology; an editor grows to show it. An empty
// text clears it.
void TellProblem(QLabel& label, QWidget& editor, const QString& text);

class EditorArea;

class EditorDialog : public QDialog {
 public:
  // Whether Cancel would discard something that was entered.
  [[nodiscard]] virtual bool Changed() const = 0;

  void reject() override;  // asks if something was changed
  // Returns the focus to the window behind, even if a question was closed together with the dialog.
  void done(int result) override;
  // Grows as far as the screen allows, and scrolls to the widget.
  void MakeRoomFor(QWidget& widget);

 protected:
  // Enter presses the button with the focus, and OK anywhere else; Ctrl+Enter always presses OK.
  void keyPressEvent(QKeyEvent* event) override;

  // `texts` outlives the dialog.
  EditorDialog(const TextTable& texts, const std::string& title, QWidget* parent);

  [[nodiscard]] const TextTable& Texts() const { return texts_; }
  [[nodiscard]] QString Text(std::string_view key, const std::vector<std::string>& parameters = {}) const;
  [[nodiscard]] QString Caption(std::string_view key) const;  // the text without its mnemonic
  // The contents above the buttons; they scroll if the screen is too small.
  [[nodiscard]] QVBoxLayout* Rows() const;
  [[nodiscard]] QLabel* NewNote(std::string_view key) const;
  // Never the default button: Enter in a field means OK.
  [[nodiscard]] QPushButton* NewButton(std::string_view key, std::function<void()> action);
  // Below Rows(). Each may have another caption.
  void AddOkAndCancel(std::string_view ok_key = "button.ok", std::string_view cancel_key = "button.cancel");
  // For read-only dialogs; Esc still works.
  void HideCancel();
  // Does the work; shows a failure at `place` with the text of `key` and the failure's description. Returns
  // whether it succeeded.
  bool Try(std::string_view key, QLabel& place, const std::function<void()>& work);
  // The same for work that stores rows. If somebody else has changed the same rows, `conflict` gets their
  // keys instead and informs the user.
  bool TryToStore(std::string_view key, QLabel& place, const std::function<void()>& work,
                  const std::function<void(const std::vector<std::string>& rows)>& conflict);

 private:
  const TextTable& texts_;
  EditorArea* area_;
  QDialogButtonBox* buttons_ = nullptr;
};

}  // namespace plovix::app
