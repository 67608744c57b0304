#include "unread.h"

#include <algorithm>

namespace plovix {

std::string ValueNow(const Control& control) {
  if (const auto* box = dynamic_cast<const TextBox*>(&control)) return box->Text();
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control))
    return std::to_string(combo->Index()) + combo->Text();
  if (const auto* box = dynamic_cast<const CheckBox*>(&control)) return std::to_string(box->Value());
  if (const auto* picker = dynamic_cast<const DateTimePicker*>(&control))
    return std::to_string(picker->Value().time_since_epoch().count());
  if (const auto* slot = dynamic_cast<const HostSlot*>(&control))
    return slot->Embedded() && slot->Embedded()->Touched() ? "touched" : "";
  if (dynamic_cast<const OptionButton*>(&control) == nullptr) return "";
  const auto options = control.Container().OptionButtons();
  const auto selected = std::ranges::find_if(options, &OptionButton::Selected);
  return selected == options.end() ? "" : std::string((*selected)->Name());
}

}  // namespace plovix
