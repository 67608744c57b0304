#include "binding.h"

#include <QApplication>
#include <QEvent>
#include <QFocusEvent>
#include <QScrollArea>
#include <QWidget>

#include "entry_rule.h"
#include "plain_text.h"
#include "texts.h"

namespace plovix::qt {
namespace {

// True if the focus is in `widget` or in a popup that belongs to it.
bool HoldsFocus(const QWidget* widget) {
  const QWidget* at = QApplication::focusWidget();
  while (at != nullptr && at != widget) at = at->parentWidget();
  return at != nullptr;
}

}  // namespace

Binding::Binding(Surface& surface, Control& control) : surface_(surface), control_(control) {
  control_.Observe(this);
}

Binding::~Binding() {
  control_.Observe(nullptr);
}

void Binding::Adopt(QWidget* widget, bool watched) {
  widget_ = widget;
  widget_->setObjectName(Text(control_.Name()));
  if (watched) widget_->installEventFilter(this);
}

void Binding::DrawAll() {
  const PageWrite write(surface_);
  Draw();
  DrawState();
}

// A frame's widget rules over those in it, as the frame does over its controls.
void Binding::DrawState() {
  widget_->setEnabled(control_.Enabled());
  // A widget that was never hidden is shown with its page; showing it now would lay it out separately.
  if (widget_->isHidden() == control_.Visible()) widget_->setVisible(control_.Visible());
}

void Binding::TakeFocus(Qt::FocusReason reason) {
  widget_->setFocus(reason);
  Reveal();
}

void Binding::Reveal() {
  for (QWidget* at = widget_->parentWidget(); at != nullptr; at = at->parentWidget()) {
    if (auto* scroll = qobject_cast<QScrollArea*>(at)) scroll->ensureWidgetVisible(widget_);
  }
}

void Binding::SetAccessibleName(const QString& name) {
  Announce(*widget_, name);
}

void Binding::Announce(QWidget& widget, const QString& name) {
  if (widget.accessibleName() != name) widget.setAccessibleName(name);
}

QString Binding::ProblemWith(const QString& text) const {
  const auto& refuse = surface_.options.refuse;
  return refuse ? Text(refuse(control_, text.toStdString())) : QString();
}

void Binding::TellProblem(const QString& problem) {
  if (problem_ != nullptr) qt::TellProblem(*problem_, *widget_, problem);
}

void Binding::KeepToRule(QLineEdit& field) {
  if (!surface_.options.refuse) return;
  new EntryRule(
      field, [this](const QString& text) { return ProblemWith(text); },
      [this](const QString& problem) { TellProblem(problem); });
}

void Binding::Changed(Aspect aspect) {
  const PageWrite write(surface_);
  switch (aspect) {
    case Aspect::kEnabled:
    case Aspect::kVisible:
      DrawState();
      break;
    case Aspect::kFocus:
      TakeFocus();
      break;
    case Aspect::kTextSelection:
      DrawSelection();
      break;
    case Aspect::kCaption:
      Draw();
      surface_.captions_changed();
      break;
    case Aspect::kText:
    case Aspect::kValue:
    case Aspect::kItems:
    case Aspect::kIndex:
    case Aspect::kLook:
      Draw();
      break;
  }
}

bool Binding::eventFilter(QObject* watched, QEvent* event) {
  if (watched != widget_) return false;
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
    const QPointer<Binding> self(this);
    FocusMoved(static_cast<QFocusEvent&>(*event));
    return !self;  // nothing is left that could handle the event
  }
  // The wheel scrolls the page; it changes a value only in the focused widget.
  if (event->type() == QEvent::Wheel && !widget_->hasFocus()) {
    event->ignore();
    return true;
  }
  return OnEvent(*event);
}

// The user has not moved when a window loses or regains the activation, a popup opens or closes, or a page is
// being removed. A dialog that is being shown sends its first field a focus event before the focus has come.
void Binding::FocusMoved(const QFocusEvent& event) {
  if (PageWrites() || !widget_->isVisible() || event.lostFocus() == HoldsFocus(widget_)) return;
  switch (event.reason()) {
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
    case Qt::MenuBarFocusReason:
      return;
    case Qt::MouseFocusReason:
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
    case Qt::OtherFocusReason:
    case Qt::NoFocusReason:
      break;
  }
  AsUser([&control = control_, arrived = event.gotFocus()](User& user) {
    return arrived ? user.Enter(control) : user.Leave(control);
  });
}

}  // namespace plovix::qt
