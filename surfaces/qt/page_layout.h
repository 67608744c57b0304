// Lays out the widgets of a page by its lines and names its fields for assistive technology. Used by the form
// widget.
#pragma once

#include <map>

#include "binding.h"
#include "page_lines.h"

namespace plovix::qt {

using Bindings = std::map<const Control*, std::unique_ptr<Binding>>;

// Lays the page out on `page`; every control of the lines has a binding. `with_problems`: each line with
// editable fields gets a place below it for problems.
void LayOut(const std::vector<Line>& lines, const Bindings& bindings, QWidget* page, bool with_problems);

// The controls in the order of the lines, or as the form declares them.
[[nodiscard]] std::vector<Control*> InOrder(const Form& form, const std::vector<Line>& lines, TabOrder order);
// Chains the Tab stops in that order.
void ChainTabStops(const std::vector<Control*>& controls, const Bindings& bindings);

// Names the controls without captions; to be called again when a caption has changed.
void NameFields(const std::vector<Line>& lines, const Bindings& bindings);

}  // namespace plovix::qt
