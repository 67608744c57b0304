/// @file
/// How a host draws its own control that stands in a page.
#pragma once

#include <plovix/controls/kinds.h>

#include <functional>

class QWidget;

namespace plovix::qt {

/// Draws the host's own control that stands in a slot; gives back a widget owned by `parent`, or nothing for
/// an empty place.
using SlotFactory = std::function<QWidget*(HostControl& control, QWidget* parent)>;

}  // namespace plovix::qt
