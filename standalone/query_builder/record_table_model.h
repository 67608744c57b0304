// The records that a query found as rows of a table. Used by the dialog in which records are chosen.
#pragma once

#include <plovix/standalone/data/query_run.h>
#include <plovix/standalone/text/text_table.h>

#include <QAbstractTableModel>

namespace plovix::app {

class RecordTableModel final : public QAbstractTableModel {
 public:
  static constexpr int kSearchRole = Qt::UserRole;

  // `texts` outlives it.
  RecordTableModel(const TextTable& texts, QObject* parent) : QAbstractTableModel(parent), texts_(texts) {}

  void SetRecords(QueryRows found);
  [[nodiscard]] const QueryRows& Records() const { return found_; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const TextTable& texts_;
  QueryRows found_;
};

}  // namespace plovix::app
