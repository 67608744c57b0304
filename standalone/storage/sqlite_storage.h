// Tasks in a SQLite file. Used by the program; it needs a QCoreApplication, which finds the driver.
//
// Every save is on the disk when it returns (write-ahead log, synchronous FULL). Several programs may
// have the file open; a save that finds the task changed by another one is a TaskConflict. The file must
// lie on a local disk.
#pragma once

#include <plovix/standalone/model/task_storage.h>

#include <chrono>
#include <memory>
#include <string>

namespace plovix {

// tasks.sqlite in the folder "plovix" of the user's data folder.
[[nodiscard]] std::string DefaultDatabasePath();

// To be used by the thread that made it.
class SqliteStorage final : public TaskStorage {
 public:
  // How long to wait for another program that is writing.
  static constexpr std::chrono::milliseconds kPatience{3000};

  // Opens or creates the file; the folder is created only for the default path. Fails, and changes
  // nothing, when the file is not a task file or a newer program made it.
  explicit SqliteStorage(const std::string& path, std::chrono::milliseconds patience = kPatience);
  ~SqliteStorage() override;
  SqliteStorage(const SqliteStorage&) = delete;
  SqliteStorage& operator=(const SqliteStorage&) = delete;

  [[nodiscard]] std::vector<TaskRecord> List() override;
  [[nodiscard]] std::optional<TaskRecord> Load(std::int64_t id) override;
  TaskRecord Save(const TaskRecord& task, DateTime now) override;
  void Delete(std::int64_t id) override;

 private:
  class Tables;
  std::unique_ptr<Tables> tables_;
};

}  // namespace plovix
