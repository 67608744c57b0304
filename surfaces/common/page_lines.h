/// @file
/// Reads the lines of a page's design: what each line is, from the kinds that stand on it, and which label
/// names which field.
#pragma once

#include <plovix/controls/form.h>

#include <vector>

/// What every surface has to know of pages, captions and lists, and no toolkit does.
namespace plovix::surface {

/// What a line is, and so what each control on it is there for.
enum class LineKind {
  kText,   ///< one label: wraps, as wide as the page
  kHelp,   ///< one label right under a lone option button: explains it
  kRow,    ///< a label, the field that it names, buttons that belong to the field
  kField,  ///< one field alone
  kFill,   ///< one control that takes the height that is left
  kFrame,  ///< a frame; the controls in it have lines of their own
  kFlow,   ///< anything else, side by side
};

/// One line of a page. The controls are the form's.
struct Line {
  LineKind kind;                      ///< what the line is
  std::vector<Control*> controls;     ///< in reading order, at least one
  OptionButton* explained = nullptr;  ///< by a help line; nullptr on others
};

/// The lines of the form's design, top to bottom. Lines without a control are left out.
[[nodiscard]] std::vector<Line> ReadLines(const Form& form);

/// Takes an entry and has no caption of its own: text box, combo box, picker.
[[nodiscard]] bool IsField(const Control& control);
/// The user types into it freely: text box, editable combo box.
[[nodiscard]] bool TakesText(const Control& control);

/// The label that names the field at `index` of the line, the one right before it: its mnemonic leads to the
/// field. nullptr where no field stands, or no label before it.
[[nodiscard]] Label* NamingLabel(const Line& line, std::size_t index);

}  // namespace plovix::surface
