#include "host_slot_binding.h"

#include <QWidget>

namespace plovix::qt {

HostSlotBinding::HostSlotBinding(Surface& surface, HostSlot& slot, QWidget* parent)
    : BindingOf(surface, slot) {
  QWidget* widget =
      slot.Embedded() && surface.make_slot ? surface.make_slot(*slot.Embedded(), parent) : nullptr;
  Adopt(widget != nullptr ? widget : new QWidget(parent), false);
}

void HostSlotBinding::TakeFocus(Qt::FocusReason reason) {
  for (QWidget* stop : TabStops(Widget())) {
    if (!stop->isEnabled() || !stop->isVisibleTo(Widget())) continue;
    stop->setFocus(reason);
    return;
  }
}

std::vector<QWidget*> TabStops(QWidget* widget) {
  std::vector<QWidget*> stops;
  QWidget* at = widget;
  do {
    const bool inside = at == widget || widget->isAncestorOf(at);
    if (inside && (at->focusPolicy() & Qt::TabFocus) != 0 && at->focusProxy() == nullptr) stops.push_back(at);
    at = at->nextInFocusChain();
  } while (at != widget);
  return stops;
}

}  // namespace plovix::qt
