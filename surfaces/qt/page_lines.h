// Reads a design's lines: derives the kind of each line from the controls on it. Used to lay out a page and
// to name its fields.
#pragma once

#include <plovix/controls/form.h>

#include <vector>

namespace plovix::qt {

enum class LineKind {
  kText,   // one label: wraps, as wide as the page
  kHelp,   // one label directly below a single option button, which it explains
  kRow,    // a label, its field, buttons that belong to it
  kField,  // a single field
  kFill,   // one control that takes the remaining height
  kFrame,  // a frame; the controls in it have their own lines
  kFlow,   // anything else, side by side
};

struct Line {
  LineKind kind;
  std::vector<Control*> controls;     // in reading order
  OptionButton* explained = nullptr;  // the option that a help line explains
};

[[nodiscard]] std::vector<Line> ReadLines(const Form& form);

// Whether the control takes input and has no caption: text box, combo box, picker.
[[nodiscard]] bool IsField(const Control& control);

// The label that names the field at `index` of the line: the one directly before it; nullptr without one.
[[nodiscard]] Label* LabelBefore(const Line& line, std::size_t index);

}  // namespace plovix::qt
