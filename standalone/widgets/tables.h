// What the tables of the program have in common. Used by the editors and by the list of tasks.
#pragma once

#include <QStringList>

class QTableView;
class QTableWidget;
class QTableWidgetItem;

namespace plovix::app {

// Tab leaves the table, and cells are not typed in.
void PrepareTable(QTableView& table);
// A table in which a row is chosen.
void PrepareRowTable(QTableView& table);
// A table that is edited as a whole: Tab leaves it, the first column takes the room that is left.
void PrepareTable(QTableWidget& table, const QStringList& columns);

// A cell with as much of the text as can be shown; its tip shows more.
[[nodiscard]] QTableWidgetItem* NewCell(const QString& text);
// A cell that is a check box; `name` is for whoever cannot see its column.
[[nodiscard]] QTableWidgetItem* NewCheckCell(const QString& name, bool checked);

// As wide as what the column shows, up to a limit in characters: one long text leaves room for the others.
void FitColumn(QTableView& table, int column, int most);

}  // namespace plovix::app
