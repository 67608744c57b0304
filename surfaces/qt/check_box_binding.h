// Check boxes.
#pragma once

#include <QCheckBox>

#include "binding.h"

namespace plovix::qt {

class CheckBoxBinding final : public BindingOf<CheckBox> {
 public:
  CheckBoxBinding(Surface& surface, CheckBox& box, QWidget* parent);

 private:
  void Draw() override;

  QCheckBox* widget_;
};

}  // namespace plovix::qt
