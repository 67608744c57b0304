#include "label_binding.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

#include "texts.h"

namespace plovix::qt {
namespace {

constexpr double kHeadingScale = 1.35;  // times the size of the text

// Announces what a label is: a heading, a link that can be pressed, or text.
class LabelAccess final : public QAccessibleWidget {
 public:
  explicit LabelAccess(LabelWidget* label)
      : QAccessibleWidget(label, QAccessible::StaticText), label_(label) {}

  [[nodiscard]] QAccessible::Role role() const override {
    if (label_->link) return QAccessible::Link;
    return label_->heading ? QAccessible::Heading : QAccessible::StaticText;
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Name ? label_->announced : QAccessibleWidget::text(kind);
  }
  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.linked = label_->link;
    state.readOnly = true;
    return state;
  }
  [[nodiscard]] QVector<QPair<QAccessibleInterface*, QAccessible::Relation>> relations(
      QAccessible::Relation match) const override {
    auto found = QAccessibleWidget::relations(match);
    if ((match & QAccessible::Labelled) != 0 && label_->buddy() != nullptr) {
      found.append({QAccessible::queryAccessibleInterface(label_->buddy()), QAccessible::Labelled});
    }
    return found;
  }
  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (label_->link && label_->isEnabled()) names.prepend(pressAction());
    return names;
  }
  // Delayed, because what it opens may stay open for long and the caller waits for an answer.
  void doAction(const QString& action) override {
    if (action != pressAction()) {
      QAccessibleWidget::doAction(action);
    } else if (label_->link && label_->isEnabled()) {
      QMetaObject::invokeMethod(label_, label_->activate, Qt::QueuedConnection);
    }
  }

 private:
  LabelWidget* label_;
};

QAccessibleInterface* MakeLabelAccess(const QString& class_name, QObject* object) {
  if (class_name != QLatin1String("QLabel")) return nullptr;
  auto* label = dynamic_cast<LabelWidget*>(object);
  return label == nullptr ? nullptr : new LabelAccess(label);
}

}  // namespace

void LabelWidget::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  if (!link || !hasFocus()) return;
  QPainter painter(this);
  QStyleOptionFocusRect option;
  option.initFrom(this);
  option.backgroundColor = palette().color(QPalette::Window);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

LabelBinding::LabelBinding(Surface& surface, Label& label, QWidget* parent)
    : BindingOf(surface, label), widget_(new LabelWidget(parent)) {
  [[maybe_unused]] static const bool installed = (QAccessible::installFactory(&MakeLabelAccess), true);
  widget_->setTextFormat(Qt::PlainText);
  widget_->heading = Has(label.Info().style, Style::kHeading);
  widget_->activate = [this] { Click(); };
  Adopt(widget_);
}

void LabelBinding::ShowAsHelp() {
  const QStyle* style = widget_->style();
  widget_->setIndent(style->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, widget_) +
                     style->pixelMetric(QStyle::PM_RadioButtonLabelSpacing, nullptr, widget_));
  widget_->setWordWrap(true);
  help_ = true;
}

void LabelBinding::Draw() {
  const bool buddy = widget_->buddy() != nullptr;
  widget_->announced = CaptionToRead(Model().Caption());
  const QString text = buddy ? MnemonicCaption(Model().Caption()) : widget_->announced;
  if (text != widget_->text()) widget_->setText(text);  // notifies assistive technology, too
  // Texts are aligned with the page's leading edge, whatever their script.
  const Qt::Alignment edge = widget_->isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
  widget_->setAlignment(Qt::AlignAbsolute | edge | Qt::AlignVCenter);
  DrawLook();
}

void LabelBinding::DrawLook() {
  const bool link = Model().Link();
  if (!link && !widget_->link && !widget_->heading && !help_) return;  // looks like any other label
  if (widget_->heading || link != widget_->link) {
    QFont font;
    if (widget_->heading) {
      font.setBold(true);
      font.setPointSizeF(widget_->parentWidget()->font().pointSizeF() * kHeadingScale);
    }
    if (link) font.setUnderline(true);
    widget_->setFont(font);
  }
  widget_->setForegroundRole(link    ? QPalette::Link
                             : help_ ? QPalette::PlaceholderText
                                     : QPalette::WindowText);
  widget_->setFocusPolicy(link ? Qt::StrongFocus : Qt::NoFocus);
  if (link) {
    widget_->setCursor(Qt::PointingHandCursor);
  } else {
    widget_->unsetCursor();
  }
  widget_->link = link;
  widget_->update();
  // A link is only as wide as its text.
  QLayout* layout = link ? widget_->parentWidget()->layout() : nullptr;
  QLayoutItem* item = layout == nullptr ? nullptr : layout->itemAt(layout->indexOf(widget_));
  if (item == nullptr || item->alignment() != Qt::Alignment{}) return;
  widget_->setWordWrap(false);
  item->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  layout->invalidate();
}

void LabelBinding::Click() {
  AsUser([&label = Model()](User& user) { return user.Click(label); });
}

bool LabelBinding::OnEvent(QEvent& event) {
  if (!widget_->isEnabled()) return false;
  if (event.type() == QEvent::KeyPress && Model().Link()) {
    const auto& key = static_cast<QKeyEvent&>(event);
    if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter && key.key() != Qt::Key_Space) return false;
    if (!key.isAutoRepeat()) Click();
    return true;
  }
  const bool press = event.type() == QEvent::MouseButtonPress;
  const bool release = event.type() == QEvent::MouseButtonRelease;
  const bool twice = event.type() == QEvent::MouseButtonDblClick;
  if (!press && !release && !twice) return false;
  const auto& mouse = static_cast<QMouseEvent&>(event);
  if (mouse.button() != Qt::LeftButton) return false;
  const bool clicked = release && pressed_ && widget_->rect().contains(mouse.position().toPoint());
  pressed_ = press;
  // The second click of a double click arrives only as the double click.
  if (clicked) Click();
  if (twice) AsUser([&label = Model()](User& user) { return user.DoubleClick(label); });
  return true;
}

}  // namespace plovix::qt
