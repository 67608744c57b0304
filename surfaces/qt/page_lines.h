// Reads a design's lines: what each line is, from the kinds that stand on it. Used to lay a page out and
// to name its fields.
#pragma once

#include <plovix/controls/form.h>

#include <vector>

namespace plovix::qt {

enum class LineKind {
  kText,   // one label: wraps, as wide as the page
  kHelp,   // one label right under a lone option button: explains it
  kRow,    // a label, its field, buttons that belong to it
  kField,  // one field alone
  kFill,   // one control that takes the height that is left
  kFrame,  // a frame; the controls in it have lines of their own
  kFlow,   // anything else, side by side
};

struct Line {
  LineKind kind;
  std::vector<Control*> controls;     // in reading order
  OptionButton* explained = nullptr;  // by a help line
};

[[nodiscard]] std::vector<Line> ReadLines(const Form& form);

// Takes an entry and has no caption of its own: text box, combo box, picker.
[[nodiscard]] bool IsField(const Control& control);

// The label that names the field at `index` of the line, the one right before it; nullptr without one.
[[nodiscard]] Label* LabelBefore(const Line& line, std::size_t index);

}  // namespace plovix::qt
