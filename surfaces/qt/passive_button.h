// A checkable button that never changes by itself, because the control decides what it shows. Used by the
// bindings of check boxes and option buttons.
#pragma once

#include <QAbstractButton>

namespace plovix::qt {

template <class Button>
class PassiveButton final : public Button {
 public:
  using Button::Button;

 protected:
  void nextCheckState() override {}
};

}  // namespace plovix::qt
