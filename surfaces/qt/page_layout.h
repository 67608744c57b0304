// Places the widgets of a page by its lines. Used by the form widget.
#pragma once

#include "binding.h"

namespace plovix::qt {

// Lays the page out on `page`; every control of the lines has a binding. `with_problems`: below each line
// that is typed in there is a place for what is wrong with it.
void LayOut(const std::vector<surface::Line>& lines, const Bindings& bindings, QWidget* page,
            bool with_problems);

// Chains the stops of the Tab key in that order.
void ChainTabStops(const std::vector<Control*>& controls, const Bindings& bindings);

}  // namespace plovix::qt
