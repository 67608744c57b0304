// Creates the binding, and with it the widget, of a control. Used by the form widget.
#pragma once

#include "binding.h"

namespace plovix::qt {

[[nodiscard]] std::unique_ptr<Binding> MakeBinding(Surface& surface, Control& control, QWidget* parent);

}  // namespace plovix::qt
