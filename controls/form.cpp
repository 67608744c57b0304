#include "form.h"

#include <plovix/base/failure.h>

#include <algorithm>
#include <string>

namespace plovix {
namespace {

std::unique_ptr<Control> MakeControl(Form& form, const ControlInfo& info) {
  switch (info.kind) {
    case Kind::kLabel:
      return std::make_unique<Label>(form, info);
    case Kind::kTextBox:
      return std::make_unique<TextBox>(form, info);
    case Kind::kCheckBox:
      return std::make_unique<CheckBox>(form, info);
    case Kind::kOptionButton:
      return std::make_unique<OptionButton>(form, info);
    case Kind::kComboBox:
      return std::make_unique<ComboBox>(form, info);
    case Kind::kCommandButton:
      return std::make_unique<CommandButton>(form, info);
    case Kind::kFrame:
      return std::make_unique<Frame>(form, info);
    case Kind::kDateTimePicker:
      return std::make_unique<DateTimePicker>(form, info);
    case Kind::kHostSlot:
      return std::make_unique<HostSlot>(form, info);
  }
  throw Failure(failure_number::kInternal, "Unknown kind of control");
}

}  // namespace

Form::Form(const DesignView& design) : design_(design) {
  controls_.reserve(design.rows.size());
  for (const ControlInfo& info : design.rows) controls_.push_back(MakeControl(*this, info));
}

Control* Form::Find(std::string_view name) const {
  for (const auto& control : controls_) {
    if (control->Name() == name) return control.get();
  }
  return nullptr;
}

Control& Form::Get(std::string_view name) const {
  Control* control = Find(name);
  if (control == nullptr) {
    throw Failure(failure_number::kInvalidCall, "There is no control named " + std::string(name));
  }
  return *control;
}

std::vector<OptionButton*> Form::OptionButtons() const {
  std::vector<OptionButton*> buttons;
  for (const auto& control : controls_) {
    if (auto* button = dynamic_cast<OptionButton*>(control.get())) buttons.push_back(button);
  }
  return buttons;
}

void Form::SetMousePointer(Pointer pointer) {
  if (pointer == pointer_) return;
  pointer_ = pointer;
  if (observer_ != nullptr) observer_->PointerChanged();
}

void Form::Redraw() {
  if (observer_ != nullptr) observer_->RedrawRequested();
}

bool Form::Touched() const {
  return touched_ || std::ranges::any_of(controls_, [](const auto& control) {
           const auto* slot = dynamic_cast<const HostSlot*>(control.get());
           return slot != nullptr && slot->Embedded() && slot->Embedded()->Touched();
         });
}

void Form::Show(UserKey /*key*/) {
  if (on_show_) on_show_();
}

}  // namespace plovix
