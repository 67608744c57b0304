/// @file
/// How a host draws a control of its own that stands in a page.
#pragma once

#include <plovix/controls/kinds.h>

#include <functional>

class QWidget;

namespace plovix::qt {

/// Makes the widget for what the host put into a HostSlot, and gives back a widget owned by `parent`; nullptr
/// for a control that it does not know, which leaves the place empty. The control outlives the widget.
using SlotFactory = std::function<QWidget*(HostControl&, QWidget* parent)>;

}  // namespace plovix::qt
