#include "binding_factory.h"

#include <type_traits>

#include "check_box_binding.h"
#include "combo_box_binding.h"
#include "command_button_binding.h"
#include "date_time_picker_binding.h"
#include "frame_binding.h"
#include "host_slot_binding.h"
#include "label_binding.h"
#include "option_button_binding.h"
#include "text_box_binding.h"

namespace plovix::qt {
namespace {

// Makes the one of the classes that takes a control of this type.
template <class... BindingClasses, class Type>
std::unique_ptr<Binding> MakeOneOf(Surface& surface, Type& control, QWidget* parent) {
  std::unique_ptr<Binding> binding;
  const auto make = [&]<class BindingClass>(std::type_identity<BindingClass> /*class*/) {
    if constexpr (std::is_constructible_v<BindingClass, Surface&, Type&, QWidget*>)
      binding = std::make_unique<BindingClass>(surface, control, parent);
  };
  static_assert((0 + ... + std::is_constructible_v<BindingClasses, Surface&, Type&, QWidget*>) == 1,
                "each kind of control has one binding");
  (make(std::type_identity<BindingClasses>{}), ...);
  return binding;
}

}  // namespace

std::unique_ptr<Binding> MakeBinding(Surface& surface, Control& control, QWidget* parent) {
  if (Has(control.Info().style, Style::kMultiLine))
    return MakeOneOf<TextAreaBinding>(surface, dynamic_cast<TextBox&>(control), parent);
  std::unique_ptr<Binding> binding;
  VisitKind(control, [&](auto& typed) {
    binding = MakeOneOf<LabelBinding, TextLineBinding, CheckBoxBinding, OptionButtonBinding, ComboBoxBinding,
                        CommandButtonBinding, FrameBinding, DateTimePickerBinding, HostSlotBinding>(
        surface, typed, parent);
  });
  return binding;
}

}  // namespace plovix::qt
