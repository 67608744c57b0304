#include "frame_binding.h"

#include "texts.h"

namespace plovix::qt {

FrameBinding::FrameBinding(Surface& surface, Frame& frame, QWidget* parent)
    : BindingOf(surface, frame), widget_(new QGroupBox(parent)) {
  Adopt(widget_);
}

void FrameBinding::Draw() {
  widget_->setTitle(MnemonicCaption(Model().Caption()));
  Announce(*widget_, NameBesides(Model().Caption()));
}

}  // namespace plovix::qt
