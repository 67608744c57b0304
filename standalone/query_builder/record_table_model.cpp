#include "record_table_model.h"

#include <plovix/standalone/widgets/qt_text.h>
#include <plovix/surfaces/qt/plain_text.h>

#include <QGuiApplication>
#include <QPalette>

namespace plovix::app {

void RecordTableModel::SetRecords(QueryRows found) {
  beginResetModel();
  found_ = std::move(found);
  endResetModel();
}

int RecordTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(found_.rows.size());
}

int RecordTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(found_.columns.size());
}

QVariant RecordTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto& value =
      found_.rows.at(static_cast<std::size_t>(index.row())).at(static_cast<std::size_t>(index.column()));
  switch (role) {
    case Qt::DisplayRole:
      return qt::Shortened(ToQt(value ? *value : texts_.Host("query.preview.empty")), qt::kLongestShown);
    case Qt::ToolTipRole:
      return qt::ToolTip(ToQt(value.value_or("")));
    case Qt::ForegroundRole:
      return value ? QVariant() : QVariant(QGuiApplication::palette().color(QPalette::PlaceholderText));
    case kSearchRole:
      return ToQt(value.value_or(""));
    default:
      return {};
  }
}

QVariant RecordTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return qt::Shortened(ToQt(found_.columns.at(static_cast<std::size_t>(section))), qt::kLongestShown);
}

}  // namespace plovix::app
