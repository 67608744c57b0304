/// @file
/// Where tasks are kept. Two implementations: SQLite, and memory for scripts and tests.
#pragma once

#include <plovix/controls/failure.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "task_record.h"

namespace plovix {

/// Thrown by Save when the stored task is no longer the one that was opened: changed or deleted since.
class TaskConflict : public Failure {
 public:
  using Failure::Failure;
};

/// Every member fails with a Failure whose description tells a person what happened.
class TaskStorage {
 public:
  virtual ~TaskStorage() = default;
  /// All tasks in the order of their ids.
  [[nodiscard]] virtual std::vector<TaskRecord> List() = 0;
  /// Nothing when there is no task of that id.
  [[nodiscard]] virtual std::optional<TaskRecord> Load(std::int64_t id) = 0;
  /// Stores a new task (id 0) or a new version of a stored one, all or nothing, and gives it back with
  /// its id, version and time of change. When it returns, the task is on the disk. Fails with 5 when a text
  /// is longer than text_limits.h says.
  virtual TaskRecord Save(const TaskRecord& task, DateTime now) = 0;
  /// Deleting a task that is gone already is no failure.
  virtual void Delete(std::int64_t id) = 0;
};

/// For scripts, tests and hosts that store tasks elsewhere. Forgets them with itself.
class MemoryStorage final : public TaskStorage {
 public:
  [[nodiscard]] std::vector<TaskRecord> List() override { return tasks_; }
  [[nodiscard]] std::optional<TaskRecord> Load(std::int64_t id) override;
  TaskRecord Save(const TaskRecord& task, DateTime now) override;
  void Delete(std::int64_t id) override;

 private:
  std::vector<TaskRecord> tasks_;  // by id, ascending
  std::int64_t last_id_ = 0;
};

}  // namespace plovix
