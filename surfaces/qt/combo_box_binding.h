// Combo boxes: lists, and editable lists.
#pragma once

#include <plovix/surfaces/common/widths.h>

#include <QComboBox>
#include <QPointer>

#include "binding.h"
#include "entry_model.h"
#include "entry_popup.h"

namespace plovix::qt {

// Opens Qt's own popup for a short list and an EntryPopup for a long one.
class ComboBoxWidget final : public QComboBox {
 public:
  // `box` and `texts` outlive the widget.
  ComboBoxWidget(const ComboBox& box, const SurfaceTexts& texts, QWidget* parent);
  std::function<void()> before_popup;

  [[nodiscard]] bool PopupIsOpen() const;
  // Follows additions to the control's list, and its emptying.
  void UpdateEntries();

  // Requests room for entries of so many letters. The list itself is not measured, because it may be long.
  void SetContentsLength(int letters);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  void showPopup() override;
  void hidePopup() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  // Asks the control for its entries; false if that deleted or disabled the widget.
  [[nodiscard]] bool AskForEntries();

  const ComboBox& box_;
  const SurfaceTexts& texts_;
  EntryModel* entries_;
  int letters_ = 0;
  bool opened_ = false;         // at least once
  bool asked_ = false;          // for the entries, at least once
  QPointer<EntryPopup> popup_;  // while it is open
};

class ComboBoxBinding final : public BindingOf<ComboBox> {
 public:
  ComboBoxBinding(Surface& surface, ComboBox& box, QWidget* parent);
  [[nodiscard]] bool TakesEnter() const override;
  void SetAccessibleName(const QString& name) override;

 private:
  void Draw() override;
  void FitWidth();
  void MakeEditable();

  ComboBoxWidget* widget_;
  surface::ListWidth width_;
};

}  // namespace plovix::qt
