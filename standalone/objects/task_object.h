/// @file
/// The stand-alone host's objects behind AutoTask, its lists and the shared store.
#pragma once

#include <plovix/host/auto_task.h>
#include <plovix/host/value_store.h>
#include <plovix/standalone/tasks/task_record.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "arguments.h"
#include "call_gate.h"

namespace plovix {

struct HostState;

/// Actions over plain values; Item creates an object for each.
class ActionListObject final : public ActionList {
 public:
  /// Empty, or with these actions.
  explicit ActionListObject(std::vector<ActionRecord> initial = {}) : records(std::move(initial)) {}
  [[nodiscard]] std::int32_t Count() override { return Gated("ActionList.Count", CountOf(records)); }
  [[nodiscard]] Ref<Action> Item(std::int32_t index) override;
  void Remove(std::int32_t index) override;

  std::vector<ActionRecord> records;  ///< the host's own view, not gated
};

/// A task over plain values; created by MakeTask.
class TaskObject : public AutoTask {
 public:
  /// The task as values, including those of its current list and recurrence objects.
  [[nodiscard]] virtual TaskRecord Record() const = 0;
  /// Replaces the values and creates new list objects; recurrence and pattern objects that fit are kept.
  virtual void Assign(const TaskRecord& task) = 0;
};

/// A task object whose tags are read in the language of `state`, which outlives it.
[[nodiscard]] std::shared_ptr<TaskObject> MakeTask(HostState& state, const TaskRecord& record);

/// A store in memory.
class StoreObject final : public ValueStore {
 public:
  void Add(const std::string& key, Value value) override;
  [[nodiscard]] Ref<StoreEntry> Item(const std::string& key) override;
  [[nodiscard]] Value GetValue(const std::string& key, const Value& fallback) override;
  void SetItem(const std::string& key, Value value) override;
  [[nodiscard]] bool Exists(const std::string& key) override;

  std::map<std::string, Value> values;  ///< the host's own view, not gated
};

}  // namespace plovix
