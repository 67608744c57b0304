// The hand that moves the mouse and presses keys on the widgets of a page, and reports what they show.
#pragma once

#include <plovix/surfaces/qt/form_widget.h>

#include <QtTest>
#include <QtWidgets>
#include <functional>

#include "hand.h"

namespace plovix::testing_support {

inline void ClickOn(QWidget* widget) {
  QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(8, 8));
}

// What it does may delete the widget.
inline void DoubleClickOn(QWidget* widget) {
  const QPointer<QWidget> kept(widget);
  ClickOn(widget);
  if (kept) QTest::mouseDClick(widget, Qt::LeftButton, {}, QPoint(8, 8));
  if (kept) QTest::mouseRelease(widget, Qt::LeftButton, {}, QPoint(8, 8));
}

class QtHand : public Hand {
 public:
  // `page` returns the widget that shows the form; `outside` takes the focus when a control is left.
  QtHand(std::function<const qt::FormWidget*()> page, QWidget& outside)
      : page_(std::move(page)), outside_(outside) {}

  // A visible control that cannot be used is clicked anyway, without effect.
  bool Do(Control& control, const Act& act) override {
    QWidget* widget = WidgetOf(control);
    if (!widget->isVisible()) return false;
    if (!widget->isEnabled()) ClickOn(widget);
    const bool does = widget->isEnabled() && Fits(act.verb, control);
    // An option that is not selected may have the focus without having been entered.
    if (act.verb == Verb::kEnter && widget->hasFocus() && !control.HasFocus()) outside_.setFocus();
    if (does) Perform(widget, act);
    return does;
  }

  std::string Seen(const Control& control) override {
    const QWidget* widget = WidgetOf(control);
    const auto value = [&]() -> QString {
      const auto* combo = qobject_cast<const QComboBox*>(widget);
      const auto* time = qobject_cast<const QDateTimeEdit*>(widget);
      if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->focusPolicy() == Qt::NoFocus ? "text" : "link";
      if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
        return !button->isCheckable() ? "" : button->isChecked() ? "1" : "0";
      if (combo) return combo->currentText();
      if (time && Has(control.Info().style, Style::kTime))
        return QString::number(time->time().msecsSinceStartOfDay() / 1000);
      if (time) return QString::number(QDate(1970, 1, 1).daysTo(time->date()));
      if (const auto* line = qobject_cast<const QLineEdit*>(widget)) return line->text();
      if (const auto* area = qobject_cast<const QPlainTextEdit*>(widget)) return area->toPlainText();
      return "";
    };
    const bool usable = widget->isEnabled() && widget->isVisible();
    std::string seen = value().toStdString() + (usable ? "" : " unusable");
    if (const auto* combo = qobject_cast<const QComboBox*>(widget))
      seen += (combo->isEditable() ? " /" : " " + std::to_string(combo->currentIndex()) + "/") +
              std::to_string(combo->count());
    return seen;
  }

  const Control* Focused(const Form& form) override {
    for (const QWidget* at = QApplication::focusWidget(); at != nullptr; at = at->parentWidget()) {
      const Control* control = form.Find(at->objectName().toStdString());
      if (control != nullptr && WidgetOf(*control) == at) return control;
    }
    return nullptr;
  }

  void Settle() override { QCoreApplication::processEvents(); }

 private:
  [[nodiscard]] QWidget* WidgetOf(const Control& control) const { return page_()->WidgetOf(control.Name()); }

  void Perform(QWidget* widget, const Act& act) {
    const QPointer<QWidget> kept(widget);
    auto* combo = qobject_cast<QComboBox*>(widget);
    switch (act.verb) {
      case Verb::kType:
        ClickOn(combo ? combo->lineEdit() : widget);
        Paste(combo ? combo->lineEdit() : widget, QString::fromStdString(act.text));
        break;
      case Verb::kClick:
        ClickOn(widget);
        break;
      case Verb::kDoubleClick:
        DoubleClickOn(widget);
        break;
      case Verb::kDropDown:
      case Verb::kPick:
        widget->setFocus(Qt::TabFocusReason);
        QTest::keyClick(widget, Qt::Key_F4);
        if (!combo->view()->isVisible()) break;  // an empty list does not open
        if (act.verb == Verb::kPick)
          combo->view()->setCurrentIndex(combo->model()->index(act.index % combo->count(), 0));
        QTest::keyClick(combo->view(), act.verb == Verb::kPick ? Qt::Key_Return : Qt::Key_Escape);
        // Without a window manager the closed list keeps the activation.
        Settle();
        if (kept) widget->activateWindow();
        break;
      case Verb::kSet: {
        widget->setFocus(Qt::TabFocusReason);
        const auto* edit = qobject_cast<QDateTimeEdit*>(widget);
        const QDateTime time = QDateTime::fromSecsSinceEpoch(act.value.time_since_epoch().count(), Qt::UTC);
        Paste(widget, QLocale().toString(time, edit->displayFormat()));
        break;
      }
      case Verb::kEnter:
        widget->setFocus(Qt::TabFocusReason);
        break;
      case Verb::kLeave:
        outside_.setFocus(Qt::TabFocusReason);
        break;
    }
  }

  // Replaces the whole content of the field, as one change.
  static void Paste(QWidget* field, const QString& text) {
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QApplication::clipboard()->setText(text);
    if (text.isEmpty()) {
      QTest::keyClick(field, Qt::Key_Delete);
    } else {
      QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
    }
  }

  std::function<const qt::FormWidget*()> page_;
  QWidget& outside_;
};

}  // namespace plovix::testing_support
