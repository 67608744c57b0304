// Tasks in a SQLite file. Used by the program.
//
// Every save is on the disk when it returns (write-ahead log, synchronous FULL). Several programs may
// have the file open; a save that finds the task changed by another one is a TaskConflict. The file must
// lie on a local disk, under one name. A copy of it alone holds what EmptyLog has moved into it.
#pragma once

#include <plovix/standalone/tasks/row_cursor.h>
#include <plovix/standalone/tasks/task_storage.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "task_file.h"

namespace plovix {

// To be used by the thread that made it.
class SqliteStorage final : public TaskStorage {
 public:
  // Opens or creates the file, as OpenTaskFile does.
  explicit SqliteStorage(const std::string& path, std::chrono::milliseconds patience = kTaskFilePatience);
  ~SqliteStorage() override;
  SqliteStorage(const SqliteStorage&) = delete;
  SqliteStorage& operator=(const SqliteStorage&) = delete;

  [[nodiscard]] std::vector<TaskRecord> List() override;
  [[nodiscard]] std::vector<TaskRecord> ListReadable(
      const std::function<void(const UnreadableTask&)>& tell) override;
  [[nodiscard]] std::optional<TaskRecord> Load(std::int64_t id) override;
  TaskRecord Save(const TaskRecord& task, DateTime now) override;
  void Delete(std::int64_t id, std::int64_t version) override;

  // As Connection::EmptyLog and OnWritten; what SqliteUsersAndTags has stored is in the same log.
  bool EmptyLog();
  void OnWritten(std::function<void()> told);

  // The rows of a single SELECT on the tables of the file, everything that was saved before among them. They
  // keep nobody from saving; what is saved during the pass is not in it.
  [[nodiscard]] std::unique_ptr<RowCursor> OpenRows(const std::string& sql) const;

 private:
  class Tables;
  // To be called in the transaction that writes: the guard sees the row that the change will meet.
  void AskAbout(std::int64_t id, const TaskRecord* wanted);

  std::unique_ptr<Tables> tables_;
};

}  // namespace plovix
