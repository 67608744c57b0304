// Places the widgets of a page by its lines. Used by the form widget.
#pragma once

#include "binding.h"

namespace plovix::qt {

// Lays the page out on `page`; every control of the lines has a binding. `with_problems`: each line with
// editable fields gets a place below it for problems.
void LayOut(const std::vector<surface::Line>& lines, const Bindings& bindings, QWidget* page,
            bool with_problems);

// Chains the Tab stops in that order.
void ChainTabStops(const std::vector<Control*>& controls, const Bindings& bindings);

}  // namespace plovix::qt
