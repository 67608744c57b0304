// Labels: plain text, page headings, links and the help texts of options.
#pragma once

#include <QLabel>

#include "binding.h"

namespace plovix::qt {

class LabelWidget final : public QLabel {
 public:
  using QLabel::QLabel;
  bool link = false;
  bool heading = false;
  QString announced;
  std::function<void()> activate;  // called when assistive technology presses the label

 protected:
  void paintEvent(QPaintEvent* event) override;
};

class LabelBinding final : public BindingOf<Label> {
 public:
  LabelBinding(Surface& surface, Label& label, QWidget* parent);
  [[nodiscard]] bool TakesEnter() const override { return Model().Link(); }

  // Wraps the text, aligns it with the option's text and makes it less prominent.
  void ShowAsHelp();
  void ShowAsText() { widget_->setWordWrap(true); }
  // The field that the label names; its mnemonic leads there.
  void SetBuddy(QWidget* field) { widget_->setBuddy(field); }

 private:
  void Draw() override;
  void DrawLook();
  bool OnEvent(QEvent& event) override;
  void Click();

  LabelWidget* widget_;
  bool help_ = false;
  bool pressed_ = false;
};

}  // namespace plovix::qt
