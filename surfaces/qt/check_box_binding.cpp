#include "check_box_binding.h"

#include "passive_button.h"
#include "texts.h"

namespace plovix::qt {

CheckBoxBinding::CheckBoxBinding(Surface& surface, CheckBox& box, QWidget* parent)
    : BindingOf(surface, box), widget_(new PassiveButton<QCheckBox>(parent)) {
  Adopt(widget_);
  connect(widget_, &QCheckBox::clicked, this,
          [this] { AsUser([&model = Model()](User& user) { return user.Toggle(model); }); });
}

void CheckBoxBinding::Draw() {
  widget_->setText(MnemonicCaption(Model().Caption()));
  Announce(*widget_, NameBesides(Model().Caption()));
  widget_->setChecked(Model().Checked());
}

}  // namespace plovix::qt
