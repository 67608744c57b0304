#include "user.h"

#include <plovix/base/failure.h>

namespace plovix {

template <class Verb>
void User::Run(Form& form, std::string_view procedure, Verb verb) {
  listener_.EventBegins();
  const unsigned changes = form.Changes();
  const auto failure = FailureOf(verb);
  if (form.Changes() != changes) form.Touch(UserKey{});
  if (failure) listener_.EventFailed(*failure, procedure);
  listener_.EventEnds();
}

// `verb` gets the control as its actual class.
template <class Type, class Verb>
bool User::On(Control& control, Event event, Verb verb) {
  auto* typed = dynamic_cast<Type*>(&control);
  if (typed == nullptr || !control.Usable()) return false;
  const std::string procedure = std::string(control.Name()) + "_" + std::string(EventName(event));
  Run(control.Container(), procedure, [&] {
    control.EnterFocus(UserKey{});
    verb(*typed);
  });
  return true;
}

bool User::Type(Control& control, std::string text) {
  const auto type = [&](auto& box) { box.Type(UserKey{}, std::move(text)); };
  if (const auto* combo = dynamic_cast<ComboBox*>(&control); combo != nullptr && !combo->Editable())
    return false;
  return On<TextBox>(control, Event::kChange, type) || On<ComboBox>(control, Event::kChange, type);
}

bool User::Toggle(Control& control) {
  return On<CheckBox>(control, Event::kClick, [](CheckBox& box) { box.Toggle(UserKey{}); });
}

bool User::Choose(Control& control) {
  return On<OptionButton>(control, Event::kClick, [](OptionButton& button) { button.Choose(UserKey{}); });
}

bool User::Press(Control& control) {
  return On<CommandButton>(control, Event::kClick, [](CommandButton& button) { button.Press(UserKey{}); });
}

bool User::Click(Control& control) {
  switch (control.GetKind()) {
    case Kind::kCommandButton:
      return Press(control);
    case Kind::kOptionButton:
      return Choose(control);
    case Kind::kCheckBox:
      return Toggle(control);
    default:
      break;
  }
  auto* label = dynamic_cast<Label*>(&control);
  if (label == nullptr || !label->Usable()) return false;
  Run(control.Container(), std::string(control.Name()) + "_Click", [&] { label->Click(UserKey{}); });
  return true;
}

bool User::DoubleClick(Control& control) {
  if (!control.Usable()) return false;
  auto* label = dynamic_cast<Label*>(&control);
  auto* button = dynamic_cast<OptionButton*>(&control);
  if (label == nullptr && button == nullptr) return false;
  Run(control.Container(), std::string(control.Name()) + "_DblClick", [&] {
    if (label != nullptr) label->DoubleClick(UserKey{});
    if (button != nullptr) button->DoubleClick(UserKey{});
  });
  return true;
}

bool User::DropDown(Control& control) {
  return On<ComboBox>(control, Event::kDropDown, [](ComboBox& box) { box.DropDown(UserKey{}); });
}

bool User::Pick(Control& control, int index) {
  const auto* combo = dynamic_cast<ComboBox*>(&control);
  if (combo == nullptr || index < 0 || index >= combo->Count()) return false;
  return On<ComboBox>(control, Event::kClick, [&](ComboBox& box) { box.Pick(UserKey{}, index); });
}

bool User::Set(Control& control, DateTime value) {
  return On<DateTimePicker>(control, Event::kChange,
                            [&](DateTimePicker& picker) { picker.Set(UserKey{}, value); });
}

bool User::Enter(Control& control) {
  if (!control.Usable()) return false;
  // An option button that gets the focus becomes selected, which raises its Click.
  Run(control.Container(), std::string(control.Name()) + "_Click", [&] { control.EnterFocus(UserKey{}); });
  return true;
}

bool User::Leave(Control& control) {
  // A control that was disabled or hidden while it had the focus can still be left.
  if (!control.Usable() && !control.HasFocus()) return false;
  Run(control.Container(), std::string(control.Name()) + "_LostFocus",
      [&] { control.LeaveFocus(UserKey{}); });
  return true;
}

void User::Show(Form& form) {
  Run(form, "UserControl_Show", [&] { form.Show(UserKey{}); });
}

}  // namespace plovix
