#include "command_button_binding.h"

#include <plovix/surfaces/common/widths.h>

#include <QKeyEvent>
#include <algorithm>

#include "texts.h"

namespace plovix::qt {
namespace {

// As wide as the style makes it, but narrow if its caption is "...".
class ButtonWidget final : public QPushButton {
 public:
  using QPushButton::QPushButton;
  [[nodiscard]] QSize sizeHint() const override {
    QSize size = QPushButton::sizeHint();
    if (text().size() <= surface::kShortCaption) {
      size.setWidth(std::max(size.height(), fontMetrics().horizontalAdvance(text() + "MM")));
    }
    return size;
  }
};

}  // namespace

CommandButtonBinding::CommandButtonBinding(Surface& surface, CommandButton& button, QWidget* parent)
    : BindingOf(surface, button), widget_(new ButtonWidget(parent)) {
  widget_->setAutoDefault(false);
  widget_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  Adopt(widget_);
  connect(widget_, &QPushButton::clicked, this,
          [this] { AsUser([&model = Model()](User& user) { return user.Press(model); }); });
}

void CommandButtonBinding::Draw() {
  widget_->setText(MnemonicCaption(Model().Caption()));
}

bool CommandButtonBinding::OnEvent(QEvent& event) {
  if (event.type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<QKeyEvent&>(event);
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return false;
  if (key.modifiers().testFlag(Qt::ControlModifier)) return false;  // the window's
  if (!key.isAutoRepeat()) widget_->click();
  return true;
}

}  // namespace plovix::qt
