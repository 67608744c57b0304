#include "form.h"

#include <plovix/base/failure.h>

#include <algorithm>
#include <array>
#include <string>

namespace plovix {
namespace {

template <class Type>
std::unique_ptr<Control> Make(Form& form, const ControlInfo& info) {
  return std::make_unique<Type>(form, info);
}

template <class... Classes>
std::unique_ptr<Control> MakeControl(Form& form, const ControlInfo& info,
                                     std::type_identity<std::tuple<Classes...>> /*classes*/) {
  constexpr std::array kMakers{&Make<Classes>...};
  return kMakers.at(static_cast<std::size_t>(info.kind))(form, info);
}

}  // namespace

Form::Form(const DesignView& design) : design_(design) {
  controls_.reserve(design.rows.size());
  constexpr std::type_identity<ControlClasses> kClasses;
  for (const ControlInfo& info : design.rows) controls_.push_back(MakeControl(*this, info, kClasses));
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
