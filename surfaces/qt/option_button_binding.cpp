#include "option_button_binding.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <algorithm>

#include "passive_button.h"
#include "texts.h"

namespace plovix::qt {

OptionButtonBinding::OptionButtonBinding(Surface& surface, OptionButton& button, QWidget* parent)
    : BindingOf(surface, button), widget_(new PassiveButton<QRadioButton>(parent)) {
  widget_->setAutoExclusive(false);  // the controls are exclusive by themselves
  surface.options.push_back(this);
  Adopt(widget_);
  connect(widget_, &QRadioButton::clicked, this,
          [this] { AsUser([&model = Model()](User& user) { return user.Choose(model); }); });
}

void OptionButtonBinding::Draw() {
  widget_->setText(LiteralCaption(Model().Caption()));
  widget_->setAccessibleName(Text(Model().Caption()));
  widget_->setChecked(Model().Selected());
  for (OptionButtonBinding* option : Shared().options) option->UpdateTabStop();
}

// Tab goes to the selected button; past the others, because arriving there would select them. Without a
// selection it goes to the first.
void OptionButtonBinding::UpdateTabStop() {
  const auto& options = Shared().options;
  const auto selected = [](const OptionButtonBinding* option) { return option->Model().Selected(); };
  const bool stop = std::ranges::any_of(options, selected) ? Model().Selected() : options.front() == this;
  widget_->setFocusPolicy(stop ? Qt::StrongFocus : Qt::ClickFocus);
}

bool OptionButtonBinding::OnEvent(QEvent& event) {
  if (event.type() == QEvent::MouseButtonDblClick) {
    const auto& mouse = static_cast<QMouseEvent&>(event);
    if (mouse.button() != Qt::LeftButton || !widget_->isEnabled()) return false;
    AsUser([&model = Model()](User& user) { return user.DoubleClick(model); });
    return true;
  }
  if (event.type() != QEvent::KeyPress) return false;
  const int along = widget_->isRightToLeft() ? -1 : 1;
  switch (static_cast<QKeyEvent&>(event).key()) {
    case Qt::Key_Down:
      Step(1);
      return true;
    case Qt::Key_Up:
      Step(-1);
      return true;
    case Qt::Key_Right:
      Step(along);
      return true;
    case Qt::Key_Left:
      Step(-along);
      return true;
    default:
      return false;
  }
}

// Goes to the next usable button in reading order, round the end; arriving there selects it.
void OptionButtonBinding::Step(int step) {
  const auto& options = Shared().options;
  const int count = static_cast<int>(options.size());
  int at = static_cast<int>(std::ranges::find(options, this) - options.begin());
  for (int tried = 1; tried < count; ++tried) {
    at = (at + step + count) % count;
    OptionButtonBinding* next = options[static_cast<std::size_t>(at)];
    if (!next->Model().Usable()) continue;
    next->Reveal();
    next->widget_->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return;
  }
}

}  // namespace plovix::qt
