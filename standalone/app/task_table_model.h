// The stored tasks as rows of a table.
#pragma once

#include <QAbstractTableModel>
#include <array>
#include <utility>
#include <vector>

#include "app_parts.h"
#include "task_runs.h"

namespace plovix::app {

class TaskTableModel final : public QAbstractTableModel {
 public:
  enum Column {
    kName,
    kNext,
    kLast,
    kShortDescription,
    kCategories,
    kRecords,
    kSchedule,
    kOwner,
    kModified,
    kColumnCount
  };
  static constexpr int kSortRole = Qt::UserRole;
  static constexpr int kSearchRole = Qt::UserRole + 1;  // more of the text than is displayed

  explicit TaskTableModel(AppParts parts, QObject* parent)
      : QAbstractTableModel(parent), parts_(std::move(parts)) {}

  void SetTasks(std::vector<TaskRecord> tasks, RunsOfTasks runs);
  // Shows what has become of the same tasks since.
  void SetRuns(RunsOfTasks runs);
  // Says times and distances as of now. Only what is then another text is drawn again.
  void TellTime();
  // Whether one of the times is another text in a second; the others are in a minute.
  [[nodiscard]] bool CountsSeconds() const;

  [[nodiscard]] const TaskRecord& Task(int row) const { return RowAt(row).task; }
  [[nodiscard]] const TaskRuns& Runs(int row) const { return runs_.Of(Task(row).id); }
  [[nodiscard]] const std::optional<Pause>& AllPaused() const { return runs_.all_paused; }
  // -1 if no row has that id.
  [[nodiscard]] int RowOf(std::int64_t id) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Row {
    TaskRecord task;
    std::array<QString, kColumnCount> cells;  // those of runs apart
    ShortMonth short_month = ShortMonth::kLast;
    std::optional<Instant> next_run;
    RunCell next, last;
  };

  [[nodiscard]] const Row& RowAt(int row) const { return rows_.at(static_cast<std::size_t>(row)); }
  // Whether the row shows something else by that.
  bool TellRuns(Row& row, Instant now);
  // The text of the schedule; looks for the next run.
  [[nodiscard]] QString LookAhead(Row& row, Instant now) const;
  [[nodiscard]] std::string Text(const TaskRecord& task, Column column) const;
  [[nodiscard]] std::string Categories(const TaskRecord& task) const;
  [[nodiscard]] std::string Records(const TaskRecord& task) const;
  [[nodiscard]] QVariant RunData(const Row& row, bool is_next, int role) const;
  [[nodiscard]] QString RunTip(const Row& row, bool is_next) const;

  AppParts parts_;
  std::vector<Row> rows_;
  RunsOfTasks runs_;
};

}  // namespace plovix::app
