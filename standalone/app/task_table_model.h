// The stored tasks as rows of a table.
#pragma once

#include <QAbstractTableModel>
#include <array>
#include <utility>
#include <vector>

#include "app_parts.h"

namespace plovix::app {

class TaskTableModel final : public QAbstractTableModel {
 public:
  enum Column { kName, kShortDescription, kCategories, kRecords, kSchedule, kOwner, kModified, kColumnCount };
  static constexpr int kSortRole = Qt::UserRole;
  static constexpr int kSearchRole = Qt::UserRole + 1;  // more of the text than is displayed

  explicit TaskTableModel(AppParts parts, QObject* parent)
      : QAbstractTableModel(parent), parts_(std::move(parts)) {}

  void SetTasks(std::vector<TaskRecord> tasks);
  [[nodiscard]] const TaskRecord& Task(int row) const { return tasks_.at(static_cast<std::size_t>(row)); }
  // -1 if no row has that id.
  [[nodiscard]] int RowOf(std::int64_t id) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  [[nodiscard]] std::string Text(const TaskRecord& task, Column column) const;
  [[nodiscard]] std::string ScheduleInWords(const TaskRecord& task) const;
  [[nodiscard]] std::string Categories(const TaskRecord& task) const;
  [[nodiscard]] std::string Records(const TaskRecord& task) const;

  AppParts parts_;
  std::vector<TaskRecord> tasks_;
  std::vector<std::array<QString, kColumnCount>> cells_;  // of each task
};

}  // namespace plovix::app
