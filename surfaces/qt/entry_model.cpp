#include "entry_model.h"

#include "plain_text.h"
#include "texts.h"

namespace plovix::qt {

EntryModel::EntryModel(const ComboBox& box, QObject* parent)
    : QAbstractListModel(parent), box_(box), rows_(box.Count()) {}

int EntryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

QVariant EntryModel::data(const QModelIndex& index, int role) const {
  const bool text = role == Qt::DisplayRole || role == Qt::EditRole;
  if (!text || index.row() < 0 || index.row() >= box_.Count()) return {};
  const QString text_of = Text(box_.ItemText(index.row()));
  return box_.Editable() ? text_of : Shortened(text_of, kLongestShown);
}

void EntryModel::Update() {
  const int count = box_.Count();
  if (count < rows_) {
    beginResetModel();
    rows_ = count;
    endResetModel();
  } else if (count > rows_) {
    beginInsertRows({}, rows_, count - 1);
    rows_ = count;
    endInsertRows();
  }
}

}  // namespace plovix::qt
