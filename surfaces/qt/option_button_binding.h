// Option buttons. The group is one Tab stop; the arrow keys move from one button to the next.
#pragma once

#include <QRadioButton>

#include "binding.h"

namespace plovix::qt {

class OptionButtonBinding final : public BindingOf<OptionButton> {
 public:
  OptionButtonBinding(Surface& surface, OptionButton& button, QWidget* parent);

 private:
  void Draw() override;
  bool OnEvent(QEvent& event) override;
  void Step(int step);

  QRadioButton* widget_;
};

}  // namespace plovix::qt
