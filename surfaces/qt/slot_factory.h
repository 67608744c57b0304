/// @file
/// How a host draws its own control on a page.
#pragma once

#include <plovix/controls/kinds.h>

#include <functional>

class QWidget;

namespace plovix::qt {

/// Draws the host's own control in a slot; returns a widget owned by `parent`, or nullptr for an empty place.
using SlotFactory = std::function<QWidget*(HostControl& control, QWidget* parent)>;

}  // namespace plovix::qt
