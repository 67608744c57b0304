#include "tables.h"

#include <plovix/surfaces/qt/plain_text.h>

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <algorithm>

namespace plovix::app {
namespace {

// The style tints the cell that has the focus, text and all, as if that were disabled; the chosen row says
// enough.
class RowDelegate final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->state.setFlag(QStyle::State_HasFocus, false);
  }
};

}  // namespace

void PrepareTable(QTableView& table) {
  table.setEditTriggers(QAbstractItemView::NoEditTriggers);
  table.setTabKeyNavigation(false);
  table.setAlternatingRowColors(true);
  table.setShowGrid(false);
  table.verticalHeader()->hide();
  table.verticalHeader()->setDefaultSectionSize(table.fontMetrics().lineSpacing() * 3 / 2);
  table.horizontalHeader()->setHighlightSections(false);
}

void PrepareRowTable(QTableView& table) {
  PrepareTable(table);
  table.setSelectionBehavior(QAbstractItemView::SelectRows);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.setItemDelegate(new RowDelegate(&table));
  table.setWordWrap(false);
  table.horizontalHeader()->setStretchLastSection(true);
}

void PrepareTable(QTableWidget& table, const QStringList& columns) {
  table.setColumnCount(static_cast<int>(columns.size()));
  table.setHorizontalHeaderLabels(columns);
  PrepareTable(table);
  table.setSelectionMode(QAbstractItemView::SingleSelection);
  table.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table.horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  table.horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
}

QTableWidgetItem* NewCell(const QString& text) {
  auto* cell = new QTableWidgetItem(qt::Shortened(text, qt::kLongestShown));
  cell->setToolTip(qt::ToolTip(text));
  return cell;
}

QTableWidgetItem* NewCheckCell(const QString& name, bool checked) {
  auto* cell = new QTableWidgetItem;
  cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
  cell->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
  cell->setData(Qt::AccessibleTextRole, name);
  return cell;
}

void FitColumn(QTableView& table, int column, int most) {
  const int widest = table.fontMetrics().averageCharWidth() * most;
  table.resizeColumnToContents(column);
  table.setColumnWidth(column, std::min(table.columnWidth(column), widest));
}

}  // namespace plovix::app
