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

/// One for each page that is shown; a Next or a Back takes it away and makes the next one. It knows nothing
/// of pages and of the wizard's buttons. It has no meta-object of its own: keep the pointer, findChild and
/// qobject_cast take any widget for it.
/// Assistive technology takes it for a group under the page's heading, which it reads when the focus enters.
class FormWidget final : public QWidget {
 public:
  /// `form` keeps the page alive; `user` outlives the widget. The widget draws the form as it is now and
  /// follows it until it is destroyed, after which it is not heard of again. A verb of the user's may
  /// replace the page from within: the owner then takes the widget away with deleteLater().
  FormWidget(std::shared_ptr<Form> form, User& user, SlotFactory make_slot, QWidget* parent = nullptr,
             SurfaceTexts texts = {}, SurfaceOptions options = {});
  ~FormWidget() override;

  /// Caption of the label that names the page; empty without one.
  [[nodiscard]] QString Heading() const;

  /// Focuses what the page focused, else the first usable control in reading order; of option buttons the
  /// selected one. An option that is not selected stays so.
  void FocusFirst();
  /// True when Enter means something to what has the focus and must not press the window's button.
  [[nodiscard]] bool FocusTakesEnter() const;

  /// The widget that draws a control, for tests and pictures; nullptr for an unknown name.
  [[nodiscard]] QWidget* WidgetOf(std::string_view control_name) const;

  /// As large as the page wants to be, without scroll bars; it can be made much smaller.
  [[nodiscard]] QSize sizeHint() const override;
  /// A few short lines.
  [[nodiscard]] QSize minimumSizeHint() const override;

 private:
  class Page;
  std::unique_ptr<Page> page_;
};

}  // namespace plovix::qt
