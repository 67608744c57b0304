// Combo boxes: lists, and lists with a field to type in.
#pragma once

#include <QComboBox>
#include <QLabel>

#include "binding.h"

namespace plovix::qt {

class ComboBoxWidget final : public QComboBox {
 public:
  using QComboBox::QComboBox;
  std::function<void()> before_popup;

  void showPopup() override;
};

class ComboBoxBinding final : public BindingOf<ComboBox> {
 public:
  ComboBoxBinding(Surface& surface, ComboBox& box, QWidget* parent);
  [[nodiscard]] bool TakesEnter() const override;
  void SetAccessibleName(const QString& name) override;

 private:
  void Draw() override;
  void DrawItems();
  void MakeEditable();

  ComboBoxWidget* widget_;
  QLabel* name_;     // names the box where no label of the page does
  int longest_ = 0;  // entry, in characters
};

}  // namespace plovix::qt
