// The model of a combo box's entries: it reads them from the control without copying. Used by the combo box
// binding.
#pragma once

#include <plovix/controls/kinds.h>

#include <QAbstractListModel>

namespace plovix::qt {

class EntryModel final : public QAbstractListModel {
 public:
  // `box` outlives the model.
  EntryModel(const ComboBox& box, QObject* parent);

  // The rows that views know about. The control may be ahead of them until Update reports all changes since;
  // a list only grows, or is emptied.
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  void Update();

 private:
  const ComboBox& box_;
  int rows_;
};

}  // namespace plovix::qt
