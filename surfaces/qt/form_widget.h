// A page of controls as Qt widgets. Used by the window of the stand-alone program and by tests.
#pragma once

#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <string_view>

#include "binding.h"

namespace plovix::qt {

// Assistive technology takes it for a group under the page's heading, which it reads when the focus enters.
class FormWidget final : public QWidget {
 public:
  // `form` keeps the page alive; `user` outlives the widget. The widget draws the form as it is now and
  // follows it until it is destroyed, after which it is not heard of again. A verb of the user's may
  // replace the page from within: the owner then takes the widget away with deleteLater().
  FormWidget(std::shared_ptr<Form> form, User& user, SlotFactory make_slot, QWidget* parent = nullptr,
             SurfaceTexts texts = {});
  ~FormWidget() override;

  // Caption of the label that names the page; empty without one.
  [[nodiscard]] QString Heading() const;

  // Focuses what the page focused, else the first usable control in reading order; of option buttons the
  // selected one. An option that is not selected stays so.
  void FocusFirst();
  // True when Enter means something to what has the focus and must not press the window's button.
  [[nodiscard]] bool FocusTakesEnter() const;

  // nullptr for an unknown name.
  [[nodiscard]] QWidget* WidgetOf(std::string_view control_name) const;

  // As large as the page wants to be, without scroll bars; it can be made much smaller.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 private:
  class Page;
  std::unique_ptr<Page> page_;
};

}  // namespace plovix::qt
