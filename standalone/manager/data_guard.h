// Keeps tasks from working on other data than those that they were made for: another file may have records of
// the same keys.
#pragma once

#include <plovix/standalone/storage/sqlite_run_store.h>
#include <plovix/standalone/tasks/task_record.h>

#include <optional>
#include <string>

namespace plovix::manager {

class DataGuard {
 public:
  // `path` of the data file of this manager, which need not be there yet. `accept`: from now on, the tasks
  // are made for it. `runs` outlives the guard.
  DataGuard(SqliteRunStore& runs, std::string path, bool accept);

  // Why the task may not run on these data, in words; nothing if it may, or works on none. The first
  // manager's data file is the one that the tasks are made for.
  [[nodiscard]] std::optional<std::string> Refusal(const TaskRecord& task);

 private:
  // What is stored: the path without links, a line end, and the place. Empty if there is no file.
  [[nodiscard]] std::string Identity() const;

  SqliteRunStore& runs_;
  std::string path_;
};

}  // namespace plovix::manager
