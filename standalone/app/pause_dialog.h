// Asks why scheduled runs are to wait, and which. Used by the list of tasks.
#pragma once

#include <plovix/standalone/widgets/editor_dialog.h>
#include <plovix/standalone/widgets/text_field.h>

class QRadioButton;

namespace plovix::app {

class PauseDialog final : public EditorDialog {
 public:
  // `task`: its name. `everything`: whether the person may pause that, too. `texts` outlives the dialog.
  PauseDialog(const TextTable& texts, const std::string& task, bool everything, QWidget* parent);

  [[nodiscard]] std::string Reason() const;
  [[nodiscard]] bool Everything() const;
  [[nodiscard]] bool Changed() const override { return false; }  // a line is quickly typed again

  void accept() override;  // only if the reason can be stored

 private:
  TextField reason_;
  QRadioButton* everything_ = nullptr;  // nothing where there is no choice
};

}  // namespace plovix::app
