// The records that a run took, what became of each, and what a person decides on those that failed or are in
// doubt. Used by the details of a run.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <deque>

#include "row_model.h"
#include "run_parts.h"

class QCheckBox;
class QLabel;
class QPushButton;
class QTableView;

namespace plovix::app {

struct ByKey {
  [[nodiscard]] static bool Before(const LedgerRow& a, const LedgerRow& b) { return a.record < b.record; }
};

class LedgerTableModel final : public RowModel<LedgerRow, ByKey> {
 public:
  enum Column { kRecord, kState, kReason, kColumnCount };

  // `texts` outlives it.
  LedgerTableModel(const TextTable& texts, QObject* parent) : RowModel(parent), texts_(texts) {}

  using RowModel::Clear;
  // What was read behind the key `after`, up to its last row; with `last`, up to the end.
  void Take(const std::string& after, const std::vector<LedgerRow>& page, bool last);

  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const TextTable& texts_;
};

// Reads page by page between the events of the window, whatever the number of records.
class RecordsPanel final : public QWidget {
 public:
  RecordsPanel(RunParts parts, const RunRecord& run);

  // Reads again what may have changed, unless it is at it. `may_decide`: whether the user may run the task.
  void Refresh(bool may_decide);
  // A longer sentence takes its room from the rest; otherwise a layout would use the panel's preferred height
  // as its minimum.
  [[nodiscard]] bool hasHeightForWidth() const override { return false; }

 private:
  void ReadPage();
  void ReadFromBeginning();
  void Decide(bool done);
  void DecideSome();
  void UpdateButtons();
  [[nodiscard]] bool AnyUndecidedSelected() const;
  void TellCount();

  RunParts parts_;
  std::int64_t task_, run_;
  LedgerTableModel* model_;
  QTableView* table_;
  QCheckBox* only_undecided_;
  QPushButton *done_, *again_;
  QLabel* note_;
  QTimer reading_, deciding_;
  QElapsedTimer since_read_;
  std::int64_t cost_ = 0;  // milliseconds that the last reading took
  std::string after_;
  std::deque<std::string> to_decide_;
  bool decided_as_done_ = false, may_decide_ = false;
};

}  // namespace plovix::app
