// Frames: a border with a caption around the controls inside.
#pragma once

#include <QGroupBox>

#include "binding.h"

namespace plovix::qt {

class FrameBinding final : public BindingOf<Frame> {
 public:
  FrameBinding(Surface& surface, Frame& frame, QWidget* parent);

 private:
  void Draw() override;

  QGroupBox* widget_;
};

}  // namespace plovix::qt
