// A table of which a row is chosen, with the field that filters it. Used by the list of tasks and by the
// editor of language tags.
#pragma once

#include <functional>

class QAbstractItemModel;
class QHBoxLayout;
class QLineEdit;
class QSortFilterProxyModel;
class QString;
class QTableView;

namespace plovix::app {

// The widgets belong to the window, which lays them out. Rows are counted as the model does.
class FilteredTable final {
 public:
  // What is typed is looked for in the model's texts of the role `search_role`. `model` outlives it.
  FilteredTable(QAbstractItemModel& model, int search_role);

  [[nodiscard]] QLineEdit& Field() const { return *field_; }
  [[nodiscard]] QTableView& Table() const { return *table_; }
  // The rows that pass, in the order that is shown.
  [[nodiscard]] QSortFilterProxyModel& Shown() const { return *shown_; }
  // The field behind its caption.
  [[nodiscard]] QHBoxLayout* NewFilterRow(const QString& caption, const QString& hint) const;

  // -1 when there is none.
  [[nodiscard]] int SelectedRow() const;
  // Takes the filter back where that would hide the row; does nothing for -1.
  void Select(int row) const;
  // The first that is shown, where there is no selection.
  void SelectAnyRow() const;
  // `changed` is called when another row is selected, or another text filters.
  void OnChanged(const std::function<void()>& changed) const;

 private:
  QAbstractItemModel& model_;
  QTableView* table_;
  QSortFilterProxyModel* shown_;
  QLineEdit* field_;
};

}  // namespace plovix::app
