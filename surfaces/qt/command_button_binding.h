// Command buttons.
#pragma once

#include <QPushButton>

#include "binding.h"

namespace plovix::qt {

class CommandButtonBinding final : public BindingOf<CommandButton> {
 public:
  CommandButtonBinding(Surface& surface, CommandButton& button, QWidget* parent);
  [[nodiscard]] bool TakesEnter() const override { return true; }

 private:
  void Draw() override;
  bool OnEvent(QEvent& event) override;

  QPushButton* widget_;
};

}  // namespace plovix::qt
