#include "binding_factory.h"

#include <plovix/base/failure.h>

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

template <class BindingClass, class Type>
std::unique_ptr<Binding> Make(Surface& surface, Control& control, QWidget* parent) {
  return std::make_unique<BindingClass>(surface, static_cast<Type&>(control), parent);
}

}  // namespace

std::unique_ptr<Binding> MakeBinding(Surface& surface, Control& control, QWidget* parent) {
  switch (control.GetKind()) {
    case Kind::kLabel:
      return Make<LabelBinding, Label>(surface, control, parent);
    case Kind::kTextBox:
      if (Has(control.Info().style, Style::kMultiLine)) {
        return Make<TextAreaBinding, TextBox>(surface, control, parent);
      }
      return Make<TextLineBinding, TextBox>(surface, control, parent);
    case Kind::kCheckBox:
      return Make<CheckBoxBinding, CheckBox>(surface, control, parent);
    case Kind::kOptionButton:
      return Make<OptionButtonBinding, OptionButton>(surface, control, parent);
    case Kind::kComboBox:
      return Make<ComboBoxBinding, ComboBox>(surface, control, parent);
    case Kind::kCommandButton:
      return Make<CommandButtonBinding, CommandButton>(surface, control, parent);
    case Kind::kFrame:
      return Make<FrameBinding, Frame>(surface, control, parent);
    case Kind::kDateTimePicker:
      return Make<DateTimePickerBinding, DateTimePicker>(surface, control, parent);
    case Kind::kHostSlot:
      return Make<HostSlotBinding, HostSlot>(surface, control, parent);
  }
  throw Failure(failure_number::kInternal, "Unknown kind of control");
}

}  // namespace plovix::qt
