// Text boxes with one line and with several.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "binding.h"

namespace plovix::qt {

class TextLineWidget final : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;
  // For a number or another short entry in the middle of a text.
  void SetNarrow();
  [[nodiscard]] QSize sizeHint() const override;

 private:
  bool narrow_ = false;
};

class TextLineBinding final : public BindingOf<TextBox> {
 public:
  TextLineBinding(Surface& surface, TextBox& box, QWidget* parent);

 private:
  void Draw() override;
  void DrawSelection() override;

  TextLineWidget* widget_;
  std::string shown_;  // the control's text when it was drawn or typed; the widget alters line ends
};

class TextAreaBinding final : public BindingOf<TextBox> {
 public:
  TextAreaBinding(Surface& surface, TextBox& box, QWidget* parent);
  [[nodiscard]] bool TakesEnter() const override { return true; }

 private:
  void Draw() override;
  void DrawSelection() override;
  void TakeBack();  // the last edit

  QPlainTextEdit* widget_;
  std::string shown_;
};

}  // namespace plovix::qt
