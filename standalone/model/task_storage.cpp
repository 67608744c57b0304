#include "task_storage.h"

#include <algorithm>

#include "text_limits.h"

namespace plovix {

std::optional<TaskRecord> MemoryStorage::Load(std::int64_t id) {
  const auto found = std::ranges::find(tasks_, id, &TaskRecord::id);
  if (found == tasks_.end()) return std::nullopt;
  return *found;
}

TaskRecord MemoryStorage::Save(const TaskRecord& task, DateTime now) {
  CheckTexts(task);
  TaskRecord saved = task;
  saved.modified = now;
  ++saved.version;
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

void MemoryStorage::Delete(std::int64_t id) {
  std::erase_if(tasks_, [id](const auto& task) { return task.id == id; });
}

}  // namespace plovix
