/// @file
/// Where tasks are kept. Two implementations: SQLite, and memory for scripts and tests.
#pragma once

#include <plovix/base/failure.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "task_record.h"

namespace plovix {

/// Thrown by Save and Delete when the stored task is no longer the one that was meant: changed since, or, for
/// Save, deleted.
class TaskConflict : public Failure {
 public:
  using Failure::Failure;
};

/// A stored task that cannot be read.
struct UnreadableTask {
  TaskRecord task;     ///< what could be read of it; its id in any case
  std::string column;  ///< the first value that could not, under the storage's name for it
};

/// Asked before a task changes: what is stored now (nullptr: it is a new task) and what is to take its place
/// (nullptr: it is to be deleted). Refuses by failing, in words for a person.
using TaskGuard = std::function<void(const TaskRecord* stored, const TaskRecord* wanted)>;

/// Every member fails with a Failure whose description tells a person what happened.
class TaskStorage {
 public:
  virtual ~TaskStorage() = default;
  /// All tasks in the order of their ids.
  [[nodiscard]] virtual std::vector<TaskRecord> List() = 0;
  /// The same, but a task that cannot be read is told and left out instead of failing the whole.
  [[nodiscard]] virtual std::vector<TaskRecord> ListReadable(
      const std::function<void(const UnreadableTask&)>& /*tell*/) {
    return List();
  }
  /// Nothing when there is no task of that id.
  [[nodiscard]] virtual std::optional<TaskRecord> Load(std::int64_t id) = 0;
  /// Stores a new task (id 0) or a new version of a stored one, all or nothing, and gives it back with
  /// its id, version and time of change. When it returns, the task is on the disk. Fails with 5 when a text
  /// is longer than text_limits.h says.
  virtual TaskRecord Save(const TaskRecord& task, DateTime now) = 0;
  /// Deletes the task as it is in that version. Deleting a task that is gone already is no failure.
  virtual void Delete(std::int64_t id, std::int64_t version) = 0;

  /// Lets Save and Delete ask `guard` from now on; an empty one lets everything pass, as before the first.
  void SetGuard(TaskGuard guard) { guard_ = std::move(guard); }

 protected:
  /// Whether there is a guard to ask.
  [[nodiscard]] bool IsGuarded() const { return static_cast<bool>(guard_); }
  /// Asks the guard, if there is one. To be called by Save and Delete while nobody else can change the task.
  /// A save that comes too late (a TaskConflict) and deleting what is gone are not asked about.
  void AskGuard(const TaskRecord* stored, const TaskRecord* wanted) const;

 private:
  TaskGuard guard_;
};

/// The version behind `version`; behind the highest number they start again.
[[nodiscard]] constexpr std::int64_t NextVersion(std::int64_t version) noexcept {
  return version == std::numeric_limits<std::int64_t>::max() ? 1 : version + 1;
}

/// For scripts, tests and hosts that store tasks elsewhere. Forgets them with itself.
class MemoryStorage final : public TaskStorage {
 public:
  [[nodiscard]] std::vector<TaskRecord> List() override { return tasks_; }
  [[nodiscard]] std::optional<TaskRecord> Load(std::int64_t id) override;
  TaskRecord Save(const TaskRecord& task, DateTime now) override;
  void Delete(std::int64_t id, std::int64_t version) override;

 private:
  std::vector<TaskRecord> tasks_;  // by id, ascending
  std::int64_t last_id_ = 0;
};

}  // namespace plovix
