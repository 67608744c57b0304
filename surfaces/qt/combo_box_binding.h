// Combo boxes: lists, and lists with a field to type in.
#pragma once

#include <plovix/surfaces/common/widths.h>

#include <QComboBox>
#include <QPointer>

#include "binding.h"
#include "entry_model.h"
#include "entry_popup.h"

namespace plovix::qt {

// Opens Qt's own popup on a short list and an EntryPopup on a long one.
class ComboBoxWidget final : public QComboBox {
 public:
  // `box` and `texts` outlive the widget.
  ComboBoxWidget(const ComboBox& box, const SurfaceTexts& texts, QWidget* parent);
  std::function<void()> before_popup;

  [[nodiscard]] bool PopupIsOpen() const;
  // Takes over what has come or gone in the control's list.
  void UpdateEntries();

  // Asks for room for entries of so many letters. The list itself is not measured: it may be long.
  void SetContentsLength(int letters);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  void showPopup() override;
  void hidePopup() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  // Has the control asked for its entries; false when that took the widget away or out of use.
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
