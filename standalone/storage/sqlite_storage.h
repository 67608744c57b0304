// Tasks in a SQLite file. Used by the program.
//
// Every save is on disk when it returns (write-ahead log, synchronous FULL). Several programs may have the
// file open; a save that finds the task changed by another program fails with TaskConflict. The file must be
// on a local disk, under one name. A copy of it alone contains what EmptyLog has moved into it.
#pragma once

#include <plovix/standalone/tasks/row_cursor.h>
#include <plovix/standalone/tasks/task_storage.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "task_file.h"

namespace plovix {

// To be used only by the thread that created it.
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
  void TurnOffClearing(std::int64_t id) override;
  bool Release(std::int64_t id, std::int64_t version) override;

  // As Connection::EmptyLog and OnWritten; what SqliteUsersAndTags has stored is in the same log.
  bool EmptyLog();
  void OnWritten(std::function<void()> told);

  // The rows of a single SELECT on the tables of the file, including everything saved before. They keep
  // nobody from saving; the pass does not see what is saved meanwhile.
  [[nodiscard]] std::unique_ptr<RowCursor> OpenRows(const std::string& sql) const;

 private:
  class Tables;
  // To be called in the transaction that writes, so that the guard sees the row that will be changed.
  void AskAbout(std::int64_t id, const TaskRecord* wanted);

  std::unique_ptr<Tables> tables_;
};

}  // namespace plovix
