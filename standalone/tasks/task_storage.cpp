#include "task_storage.h"

#include <algorithm>

#include "text_limits.h"

namespace plovix {

void TaskStorage::AskGuard(const TaskRecord* stored, const TaskRecord* wanted) const {
  const bool is_new = wanted != nullptr && wanted->id == 0;
  if (!guard_ || (!is_new && stored == nullptr)) return;
  if (!is_new && wanted != nullptr && stored->version != wanted->version) return;
  guard_(is_new ? nullptr : stored, wanted);
}

std::optional<TaskRecord> MemoryStorage::Load(std::int64_t id) {
  const auto found = std::ranges::find(tasks_, id, &TaskRecord::id);
  if (found == tasks_.end()) return std::nullopt;
  return *found;
}

TaskRecord MemoryStorage::Save(const TaskRecord& task, DateTime now) {
  CheckTexts(task);
  TaskRecord saved = task;
  saved.modified = now;
  saved.saved_by = Person();
  saved.version = NextVersion(task.version);
  const auto found = std::ranges::find(tasks_, task.id, &TaskRecord::id);
  AskGuard(found == tasks_.end() ? nullptr : &*found, &task);
  if (task.id == 0) {
    saved.id = ++last_id_;
    tasks_.push_back(saved);
    return saved;
  }
  if (found == tasks_.end() || found->version != task.version) {
    throw TaskConflict(failure_number::kInvalidCall, "The task was changed or deleted since it was opened");
  }
  saved.held = found->held;
  *found = saved;
  return saved;
}

void MemoryStorage::Delete(std::int64_t id, std::int64_t version) {
  const auto found = std::ranges::find(tasks_, id, &TaskRecord::id);
  if (found == tasks_.end()) return;
  if (found->version != version) {
    throw TaskConflict(failure_number::kInvalidCall, "The task was changed since it was read");
  }
  AskGuard(&*found, nullptr);
  tasks_.erase(found);
}

void MemoryStorage::TurnOffClearing(std::int64_t id) {
  const auto found = std::ranges::find(tasks_, id, &TaskRecord::id);
  if (found != tasks_.end()) found->process_all_records = found->process_failed_records = false;
}

bool MemoryStorage::Release(std::int64_t id, std::int64_t version) {
  const auto found = std::ranges::find(tasks_, id, &TaskRecord::id);
  if (found == tasks_.end() || found->version != version) return false;
  return std::exchange(found->held, false);
}

}  // namespace plovix
