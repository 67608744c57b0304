#include "page_lines.h"

#include <plovix/designs/design.h>

#include <algorithm>

namespace plovix::surface {
namespace {

bool IsRow(const std::vector<Control*>& controls) {
  return controls.size() > 1 && controls[0]->GetKind() == Kind::kLabel && IsField(*controls[1]) &&
         std::all_of(controls.begin() + 2, controls.end(),
                     [](const Control* control) { return control->GetKind() == Kind::kCommandButton; });
}

// The option that a label on the line after `before` explains.
OptionButton* OptionAbove(const Line* before, const Control& label) {
  if (before == nullptr || before->controls.size() != 1 || Has(label.Info().style, Style::kHeading))
    return nullptr;
  Control* above = before->controls[0];
  return above->Info().frame == label.Info().frame ? dynamic_cast<OptionButton*>(above) : nullptr;
}

LineKind KindOfLone(const Control& control, bool explains) {
  switch (control.GetKind()) {
    case Kind::kLabel:
      return explains ? LineKind::kHelp : LineKind::kText;
    case Kind::kFrame:
      return LineKind::kFrame;
    case Kind::kHostSlot:
      return LineKind::kFill;
    case Kind::kTextBox:
      return Has(control.Info().style, Style::kMultiLine) ? LineKind::kFill : LineKind::kField;
    case Kind::kComboBox:
      return LineKind::kField;
    case Kind::kCheckBox:
    case Kind::kOptionButton:
    case Kind::kCommandButton:
    case Kind::kDateTimePicker:
      break;
  }
  return LineKind::kFlow;
}

}  // namespace

bool IsField(const Control& control) {
  const Kind kind = control.GetKind();
  return kind == Kind::kTextBox || kind == Kind::kComboBox || kind == Kind::kDateTimePicker;
}

bool TakesText(const Control& control) {
  const auto* list = dynamic_cast<const ComboBox*>(&control);
  return control.GetKind() == Kind::kTextBox || (list != nullptr && list->Editable());
}

Label* NamingLabel(const Line& line, std::size_t index) {
  const bool named = index > 0 && IsField(*line.controls[index]);
  return named ? dynamic_cast<Label*>(line.controls[index - 1]) : nullptr;
}

std::vector<Line> ReadLines(const Form& form) {
  std::vector<Line> lines;
  for (const std::string_view names : form.Design().lines) {
    Line line{LineKind::kFlow, {}};
    ForEachName(names, [&](std::string_view name) {
      if (!name.empty()) line.controls.push_back(&form.Get(name));
    });
    if (line.controls.empty()) continue;
    if (line.controls.size() == 1) {
      const Control& lone = *line.controls[0];
      line.explained = OptionAbove(lines.empty() ? nullptr : &lines.back(), lone);
      line.kind = KindOfLone(lone, line.explained != nullptr);
    } else if (IsRow(line.controls)) {
      line.kind = LineKind::kRow;
    }
    if (line.kind != LineKind::kHelp) line.explained = nullptr;
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace plovix::surface
