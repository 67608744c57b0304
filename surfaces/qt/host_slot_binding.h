// Slots that contain a control of the host.
#pragma once

#include "binding.h"

namespace plovix::qt {

class HostSlotBinding final : public BindingOf<HostSlot> {
 public:
  HostSlotBinding(Surface& surface, HostSlot& slot, QWidget* parent);
  // Goes to the first stop of the Tab key in the host's control.
  void TakeFocus(Qt::FocusReason reason) override;
  [[nodiscard]] bool TakesEnter() const override { return true; }

 private:
  void Draw() override {}
};

// The Tab stops in `widget`, itself included, in order.
[[nodiscard]] std::vector<QWidget*> TabStops(QWidget* widget);

}  // namespace plovix::qt
