// A combo box's entries as its widget asks for them: read from the control, not copied. Used by the combo
// box binding.
#pragma once

#include <plovix/controls/kinds.h>

#include <QAbstractListModel>

namespace plovix::qt {

class EntryModel final : public QAbstractListModel {
 public:
  // `box` outlives the model.
  EntryModel(const ComboBox& box, QObject* parent);

  // Rows are what views have been told of. The control may be ahead of them, until Update tells views of
  // all that has come or gone since; a list only grows, or is emptied.
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  void Update();

 private:
  const ComboBox& box_;
  int rows_;
};

}  // namespace plovix::qt
