// What a manager works with, besides its store: each is given by the program, a script or a test.
#pragma once

#include <plovix/controls/kinds.h>
#include <plovix/standalone/tasks/task_storage.h>

#include <memory>

#include "action_order.h"
#include "run_store.h"

namespace plovix {

// The end of an action that was begun.
struct ActionEnd {
  std::int64_t run = 0, epoch = 0;
  std::string failure;  // in words; empty if it succeeded
};

// Executes actions, at most one for each run at a time. Everything is called on the manager's thread.
class Launcher {
 public:
  virtual ~Launcher() = default;
  // Fails if the action cannot be begun; it is then over.
  virtual void Begin(const ActionOrder& order) = 0;
  // Those that ended since the last call.
  [[nodiscard]] virtual std::vector<ActionEnd> Ended(Instant now) = 0;
  // Ends the action of a run and all that it started. No end is told any more.
  virtual void Stop(std::int64_t run) = 0;
  // When an action is known to end, on a virtual clock; nothing where ends come by themselves.
  [[nodiscard]] virtual std::optional<Instant> NextEnd() const { return std::nullopt; }
};

// A record that a task may process.
struct SourceRecord {
  std::string key;  // as KeyOf; unique
  RecordValues values;
  std::optional<std::string> change;   // the value of the field that tells when it changed
  std::optional<DateTime> changed_at;  // the same as a wall time of the schedules' zone
};

class RecordPass {
 public:
  virtual ~RecordPass() = default;
  // Nothing from the end on. Fails in words.
  [[nodiscard]] virtual std::optional<SourceRecord> Next() = 0;
  // Whether the data object has a field that tells when a record changed.
  [[nodiscard]] virtual bool TellsChange() const = 0;
};

class RecordSource {
 public:
  virtual ~RecordSource() = default;
  // The records that the task's query finds, in the order of their keys; all records without a query. With
  // `keys`, of these only those. Fails in words: no such data object, no unique key, a wrong query, no right
  // to read it.
  [[nodiscard]] virtual std::unique_ptr<RecordPass> Open(const TaskRecord& task,
                                                         const std::vector<std::string>& keys) = 0;
};

struct ManagerPorts {
  TaskStorage& tasks;
  RunStore& runs;
  Launcher& launcher;
  RecordSource& records;
  Secrets secrets = {};
  // Why the run of the task may not begin now, in words; nothing if it may. Asked at each claim; empty:
  // everything may.
  std::function<std::optional<std::string>(const TaskRecord& task, const RunRecord& run)> refusal = {};
  // Told of each attempt as it begins (no end), and as it ends; must not fail. Empty: nobody listens.
  std::function<void(const RunRecord& run, const RunEnd* end)> told = {};
};

}  // namespace plovix
