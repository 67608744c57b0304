/// @file
/// A page of controls as Qt widgets, for a wizard window of any application.
#pragma once

#include <plovix/controls/user.h>

#include <QString>
#include <QWidget>
#include <memory>
#include <string_view>

#include "slot_factory.h"
#include "surface_options.h"
#include "surface_texts.h"

namespace plovix::qt {

/// One for each page shown; Next and Back replace it with a new one. It knows nothing about pages and the
/// wizard's buttons. It has no meta-object of its own, so keep the pointer: findChild and qobject_cast would
/// accept any widget. To assistive technology it is a group named by the page's heading, which is read when
/// the focus enters.
class FormWidget final : public QWidget {
 public:
  /// `form` keeps the page alive; `user` outlives the widget. The widget draws the current state of the form
  /// and follows its changes until it is destroyed. A verb of `user` may replace the page while the widget is
  /// calling it: the owner then removes the widget with deleteLater().
  FormWidget(std::shared_ptr<Form> form, User& user, SlotFactory make_slot, QWidget* parent = nullptr,
             SurfaceTexts texts = {}, SurfaceOptions options = {});
  ~FormWidget() override;

  /// Caption of the label that names the page; empty without one.
  [[nodiscard]] QString Heading() const;

  /// Focuses the control that the page focused, or else the first usable control in reading order; of option
  /// buttons the selected one. It never selects an option.
  void FocusFirst();
  /// True if the focused widget uses Enter, which must not press the window's button then.
  [[nodiscard]] bool FocusTakesEnter() const;

  /// The widget that draws a control, for tests and pictures; nullptr for an unknown name.
  [[nodiscard]] QWidget* WidgetOf(std::string_view control_name) const;

  /// The size of the page without scroll bars; it can be made much smaller.
  [[nodiscard]] QSize sizeHint() const override;
  /// The size of a few short lines.
  [[nodiscard]] QSize minimumSizeHint() const override;

 private:
  class Page;
  std::unique_ptr<Page> page_;
};

}  // namespace plovix::qt
