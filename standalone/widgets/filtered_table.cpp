#include "filtered_table.h"

#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTableView>

#include "pieces.h"
#include "tables.h"

namespace plovix::app {

FilteredTable::FilteredTable(QAbstractItemModel& model, int search_role)
    : model_(model),
      table_(new QTableView),
      shown_(new QSortFilterProxyModel(table_)),
      field_(new QLineEdit) {
  shown_->setSourceModel(&model_);
  shown_->setFilterKeyColumn(-1);
  shown_->setFilterRole(search_role);
  shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  table_->setModel(shown_);
  PrepareRowTable(*table_);
  field_->setClearButtonEnabled(true);
}

QHBoxLayout* FilteredTable::NewFilterRow(const QString& caption, const QString& hint) const {
  field_->setPlaceholderText(hint);
  return NewRow({NewCaption(caption, *field_), field_});
}

int FilteredTable::SelectedRow() const {
  const QModelIndexList rows = table_->selectionModel()->selectedRows();
  return rows.isEmpty() ? -1 : shown_->mapToSource(rows.constFirst()).row();
}

void FilteredTable::Select(int row) const {
  if (row < 0) return;
  if (!shown_->mapFromSource(model_.index(row, 0)).isValid()) field_->clear();
  const QModelIndex index = shown_->mapFromSource(model_.index(row, 0));
  table_->selectRow(index.row());
  table_->scrollTo(index);
}

void FilteredTable::SelectAnyRow() const {
  if (SelectedRow() < 0) table_->selectRow(0);
}

void FilteredTable::OnChanged(const std::function<void()>& changed) const {
  QObject::connect(field_, &QLineEdit::textChanged, table_, [this, changed](const QString& text) {
    shown_->setFilterFixedString(text);
    SelectAnyRow();
    changed();
  });
  QObject::connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, table_, changed);
}

}  // namespace plovix::app
