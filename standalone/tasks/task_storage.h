/// @file
/// Where tasks are stored. Two implementations: SQLite, and memory for scripts and tests.
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

/// Thrown by Save and Delete if the stored task has been changed meanwhile or, for Save, deleted.
class TaskConflict : public Failure {
 public:
  using Failure::Failure;
};

/// A stored task that cannot be read.
struct UnreadableTask {
  TaskRecord task;     ///< what could be read of it; always has its id
  std::string column;  ///< the storage's name of the first unreadable value
};

/// Called before a task changes, with the stored task (nullptr: a new task) and its replacement (nullptr:
/// delete it). Refuses by failing, with a message for a person.
using TaskGuard = std::function<void(const TaskRecord* stored, const TaskRecord* wanted)>;

/// Every member fails with a Failure whose description tells a person what happened.
class TaskStorage {
 public:
  virtual ~TaskStorage() = default;
  /// All tasks in the order of their ids.
  [[nodiscard]] virtual std::vector<TaskRecord> List() = 0;
  /// The same, but an unreadable task is reported and left out instead of failing the call.
  [[nodiscard]] virtual std::vector<TaskRecord> ListReadable(
      const std::function<void(const UnreadableTask&)>& /*tell*/) {
    return List();
  }
  /// Nothing if there is no task with that id.
  [[nodiscard]] virtual std::optional<TaskRecord> Load(std::int64_t id) = 0;
  /// Stores a new task (id 0) or a new version of a stored one, all or nothing, and returns it with its id,
  /// version, time of change and the person (SetPerson). On return the task is on disk. Fails with 5 if a
  /// text is longer than text_limits.h allows. Whether a stored task is held stays as it is stored.
  virtual TaskRecord Save(const TaskRecord& task, DateTime now) = 0;
  /// Deletes that version of the task. Deleting a task that is already gone is not a failure.
  virtual void Delete(std::int64_t id, std::int64_t version) = 0;

  /// Turns off ProcessAllRecords and ProcessFailedRecords of a stored task, whose version stays: they have
  /// been obeyed. Called by automation managers alone; the default does nothing, for storages whose tasks
  /// none of them runs.
  virtual void TurnOffClearing(std::int64_t /*id*/) {}

  /// Ends the hold of that version of a task, which stays. False if it is another one by now, or not held.
  virtual bool Release(std::int64_t /*id*/, std::int64_t /*version*/) { return false; }

  /// Makes Save and Delete call `guard` from now on; an empty guard, the default, allows everything.
  void SetGuard(TaskGuard guard) { guard_ = std::move(guard); }
  /// The id of the user who saves from now on, which is stored with each task; empty, the default: unknown.
  void SetPerson(std::string id) { person_ = std::move(id); }

 protected:
  /// Whether there is a guard.
  [[nodiscard]] bool IsGuarded() const { return static_cast<bool>(guard_); }
  /// Who saves.
  [[nodiscard]] const std::string& Person() const { return person_; }
  /// Calls the guard, if there is one. To be called by Save and Delete while nobody else can change the task,
  /// but not for a save that comes too late (a TaskConflict) or for deleting what is gone.
  void AskGuard(const TaskRecord* stored, const TaskRecord* wanted) const;

 private:
  TaskGuard guard_;
  std::string person_;
};

/// The version after `version`; after the highest number they start again.
[[nodiscard]] constexpr std::int64_t NextVersion(std::int64_t version) noexcept {
  return version == std::numeric_limits<std::int64_t>::max() ? 1 : version + 1;
}

/// For scripts, tests and hosts that store tasks elsewhere. Tasks are lost with the object.
class MemoryStorage final : public TaskStorage {
 public:
  [[nodiscard]] std::vector<TaskRecord> List() override { return tasks_; }
  [[nodiscard]] std::optional<TaskRecord> Load(std::int64_t id) override;
  TaskRecord Save(const TaskRecord& task, DateTime now) override;
  void Delete(std::int64_t id, std::int64_t version) override;
  void TurnOffClearing(std::int64_t id) override;
  bool Release(std::int64_t id, std::int64_t version) override;

 private:
  std::vector<TaskRecord> tasks_;  // by id, ascending
  std::int64_t last_id_ = 0;
};

}  // namespace plovix
