// Runs as rows of a table, newest first, read page by page. Used by the history.
#pragma once

#include <map>
#include <string>

#include "row_model.h"
#include "run_parts.h"

namespace plovix::app {

struct RunRow {
  RunRecord run;
  std::string name;  // of its task
  bool operator==(const RunRow&) const = default;
};
struct NewestFirst {
  [[nodiscard]] static bool Before(const RunRow& a, const RunRow& b) { return a.run.id > b.run.id; }
};

class RunTableModel final : public RowModel<RunRow, NewestFirst> {
 public:
  enum Column {
    kStarted,
    kTask,
    kDue,
    kOrigin,
    kState,
    kAttempt,
    kDuration,
    kRecords,
    kReason,
    kColumnCount
  };

  // `task`: of that one alone.
  RunTableModel(RunParts parts, std::optional<std::int64_t> task, QObject* parent)
      : RowModel(parent), parts_(std::move(parts)), task_(task) {}

  // @{
  // Each fails as the store does.
  // From now on only runs in one of these states (empty: any) with the text in name or reason; begins anew,
  // with the first page.
  void Look(std::vector<RunState> states, const QString& text);
  // Reads a page more, in which there may be nothing to show.
  void ReadOn();
  // Reads again what may have changed.
  void Refresh();
  // @}
  [[nodiscard]] bool HasMore() const { return more_; }
  // -1 if no row has that id.
  [[nodiscard]] int RowOf(std::int64_t run) const;

  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] std::vector<RunRecord> Page(std::optional<std::int64_t> before);
  // Those of a page that are shown.
  [[nodiscard]] std::vector<RunRow> Shown(const std::vector<RunRecord>& page);
  // The first row that is older than the run.
  [[nodiscard]] std::size_t EndOf(std::int64_t run) const;
  void RefreshOlder(std::size_t from);
  void TellTimeGoesOn();
  [[nodiscard]] std::string Text(const RunRow& row, Column column) const;
  [[nodiscard]] std::string DueInWords(const RunRecord& run) const;

  RunParts parts_;
  std::optional<std::int64_t> task_;
  std::vector<RunState> states_;
  std::string text_;                                          // folded
  std::map<std::int64_t, std::optional<std::string>> names_;  // of tasks, asked for once since Look
  bool more_ = false;
  std::int64_t newest_ = 0, oldest_ = 0;  // read so far
};

}  // namespace plovix::app
