#include "task_storage.h"

#include <algorithm>

namespace plovix {

std::optional<TaskRecord> MemoryStorage::Load(std::int64_t id) {
  const auto found = std::ranges::find(tasks_, id, &TaskRecord::id);
  if (found == tasks_.end()) return std::nullopt;
  return *found;
}

TaskRecord MemoryStorage::Save(const TaskRecord& task, DateTime now) {
  TaskRecord saved = task;
  saved.modified = now;
  saved.version = NextVersion(task.version);
  if (task.id == 0) {
    saved.id = ++last_id_;
    tasks_.push_back(saved);
    return saved;
  }
  const auto found = std::ranges::find(tasks_, task.id, &TaskRecord::id);
  if (found == tasks_.end() || found->version != task.version) {
    throw TaskConflict(failure_number::kInvalidCall, "The task was changed or deleted since it was opened");
  }
  *found = saved;
  return saved;
}

void MemoryStorage::Delete(std::int64_t id, std::int64_t version) {
  const auto found = std::ranges::find(tasks_, id, &TaskRecord::id);
  if (found == tasks_.end()) return;
  if (found->version != version) {
    throw TaskConflict(failure_number::kInvalidCall, "The task was changed since it was read");
  }
  tasks_.erase(found);
}

}  // namespace plovix
