// Places the widgets of a page by its lines and names its fields for assistive technology. Used by the
// form widget.
#pragma once

#include <map>

#include "binding.h"
#include "page_lines.h"

namespace plovix::qt {

using Bindings = std::map<const Control*, std::unique_ptr<Binding>>;

// Lays the page out on `page`; every control of the lines has a binding.
void LayOut(const std::vector<Line>& lines, const Bindings& bindings, QWidget* page);

// Chains the stops of the Tab key in reading order.
void ChainTabStops(const std::vector<Line>& lines, const Bindings& bindings);

// Names what has no caption of its own; to be called again when a caption has changed.
void NameFields(const std::vector<Line>& lines, const Bindings& bindings);

}  // namespace plovix::qt
