#include "option_button_binding.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>

#include "passive_button.h"
#include "texts.h"

namespace plovix::qt {
namespace {

using OptionWidget = PassiveButton<QRadioButton>;

// The toolkit reports a button that is not auto-exclusive as a check box.
class OptionAccess final : public QAccessibleWidget {
 public:
  explicit OptionAccess(OptionWidget* option)
      : QAccessibleWidget(option, QAccessible::RadioButton), option_(option) {}

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.checkable = true;
    state.checked = option_->isChecked();
    return state;
  }
  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (option_->isEnabled()) names.prepend(toggleAction());
    return names;
  }
  // Delayed, because choosing may ask the user something while the caller waits for an answer.
  void doAction(const QString& action) override {
    if (action != toggleAction()) {
      QAccessibleWidget::doAction(action);
    } else if (option_->isEnabled()) {
      QMetaObject::invokeMethod(option_, &QAbstractButton::click, Qt::QueuedConnection);
    }
  }

 private:
  OptionWidget* option_;
};

QAccessibleInterface* MakeOptionAccess(const QString& class_name, QObject* object) {
  if (class_name != QLatin1String("QRadioButton")) return nullptr;
  auto* option = dynamic_cast<OptionWidget*>(object);
  return option == nullptr ? nullptr : new OptionAccess(option);
}

}  // namespace

OptionButtonBinding::OptionButtonBinding(Surface& surface, OptionButton& button, QWidget* parent)
    : BindingOf(surface, button), widget_(new OptionWidget(parent)) {
  [[maybe_unused]] static const bool installed = (QAccessible::installFactory(&MakeOptionAccess), true);
  widget_->setAutoExclusive(false);  // the controls themselves are exclusive
  Adopt(widget_);
  connect(widget_, &QRadioButton::clicked, this,
          [this] { AsUser([&model = Model()](User& user) { return user.Choose(model); }); });
}

void OptionButtonBinding::Draw() {
  widget_->setText(MnemonicCaption(Model().Caption()));
  widget_->setChecked(Model().Selected());
  // Arriving at another option than the one stop of the Tab key would select it.
  const OptionButton* stop = Shared().reading.OptionStop();
  for (const OptionButton* option : Shared().form->OptionButtons()) {
    QWidget* widget = Shared().bindings.at(option)->Widget();
    widget->setFocusPolicy(option == stop ? Qt::StrongFocus : Qt::ClickFocus);
  }
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

// Arriving there selects it.
void OptionButtonBinding::Step(int step) {
  const OptionButton* next = Shared().reading.OptionAfter(Model(), step);
  if (next == nullptr) return;
  Binding& binding = *Shared().bindings.at(next);
  binding.Reveal();
  binding.Widget()->setFocus(step > 0 ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

}  // namespace plovix::qt
