// Rows of a table that are read again and again from a store: a row that is still there stays, with what is
// selected and where the view stands.
#pragma once

#include <QAbstractTableModel>
#include <utility>
#include <vector>

namespace plovix::app {

// `Order` says `Before(a, b)` of two rows; rows neither of which is before the other are the same one.
template <class Row, class Order>
class RowModel : public QAbstractTableModel {
 public:
  using QAbstractTableModel::QAbstractTableModel;

  [[nodiscard]] const Row& At(int row) const { return rows_.at(static_cast<std::size_t>(row)); }
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const final {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
  }

 protected:
  // In their order.
  [[nodiscard]] const std::vector<Row>& Rows() const { return rows_; }
  void Clear() {
    beginResetModel();
    rows_.clear();
    endResetModel();
  }
  // The rows from `at` to before `end` become `rows`, which are in order and fit in there.
  void Replace(std::size_t at, std::size_t end, const std::vector<Row>& rows) {
    std::size_t next = 0;
    while (at < end || next < rows.size()) {
      if (at < end && (next == rows.size() || Order::Before(rows_[at], rows[next]))) {
        std::size_t last = at + 1;
        while (last < end && (next == rows.size() || Order::Before(rows_[last], rows[next]))) ++last;
        beginRemoveRows({}, static_cast<int>(at), static_cast<int>(last) - 1);
        rows_.erase(Place(at), Place(last));
        endRemoveRows();
        end -= last - at;
      } else if (at == end || Order::Before(rows[next], rows_[at])) {
        std::size_t last = next + 1;
        while (last < rows.size() && (at == end || Order::Before(rows[last], rows_[at]))) ++last;
        const std::size_t count = last - next;
        beginInsertRows({}, static_cast<int>(at), static_cast<int>(at + count) - 1);
        rows_.insert(Place(at), rows.begin() + static_cast<std::ptrdiff_t>(next),
                     rows.begin() + static_cast<std::ptrdiff_t>(last));
        endInsertRows();
        at += count;
        end += count;
        next = last;
      } else {
        if (!(rows_[at] == rows[next])) {
          rows_[at] = rows[next];
          emit dataChanged(index(static_cast<int>(at), 0), index(static_cast<int>(at), columnCount() - 1));
        }
        ++at;
        ++next;
      }
    }
  }

 private:
  [[nodiscard]] auto Place(std::size_t row) { return rows_.begin() + static_cast<std::ptrdiff_t>(row); }

  std::vector<Row> rows_;
};

}  // namespace plovix::app
