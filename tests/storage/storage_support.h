// What the storage's tests share: a folder of their own, and tasks to store.
#pragma once

#include <plovix/standalone/sqlite/connection.h>
#include <plovix/standalone/storage/schema.h>
#include <plovix/standalone/storage/sqlite_run_store.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/storage/sqlite_users_and_tags.h>
#include <sqlite3.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <tuple>

#include "tests/support/failure_of.h"

namespace plovix::test {

inline constexpr DateTime kNow{std::chrono::local_days{std::chrono::year{2031} / 2 / 3} +
                               std::chrono::seconds{14706}};
inline constexpr std::chrono::milliseconds kImpatient{50};

class TempFolder {
 public:
  [[nodiscard]] std::string operator/(const std::string& name) const {
    return folder_.filePath(QString::fromStdString(name)).toStdString();
  }
  // The bytes of every file in it but the shared-memory files, by name.
  [[nodiscard]] std::map<std::string, std::string> Bytes() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path().toStdString())) {
      const std::string name = entry.path().filename();
      if (!entry.is_regular_file() || name.ends_with("-shm")) continue;
      std::ostringstream bytes;
      bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
      files[name] = bytes.str();
    }
    return files;
  }

 private:
  QTemporaryDir folder_;
};

// The path of a task file that is not there yet, in a folder of its own.
struct OwnTaskFile {
  TempFolder folder;
  std::string path = folder / "tasks.sqlite";
};

// What there is of them; as they stand, while programs have them open.
inline void CopyWithLog(const std::string& from, const std::string& to) {
  for (const std::string& suffix : {std::string(), std::string(kLogSuffix)})
    if (std::filesystem::exists(from + suffix)) std::filesystem::copy_file(from + suffix, to + suffix);
}

// What another program does to the file.
inline void RunSql(const std::string& path, const std::string& sql) {
  // Not through a Connection, which refuses what other programs may do.
  sqlite3* file = nullptr;
  EXPECT_EQ(sqlite3_open(path.c_str(), &file), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(file, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(file);
  sqlite3_close(file);
}

inline void ExpectIntact(const std::string& path) {
  const Connection connection(path, kImpatient, Access::kReadWrite);
  EXPECT_EQ(connection.Text("PRAGMA integrity_check"), "ok");
  EXPECT_EQ(connection.Text("PRAGMA foreign_key_check"), std::nullopt);
}

// All that a task file holds, through each of its connections; the ledger of the first task.
using Contents = std::tuple<std::vector<TaskRecord>, std::vector<UserRecord>, std::vector<TagRecord>,
                            std::vector<TaskState>, std::vector<RunRecord>, std::vector<LedgerRow>,
                            std::optional<Pause>, std::vector<AuditEntry>>;
inline Contents ContentsOf(const std::string& path) {
  SqliteUsersAndTags tables(path);
  SqliteRunStore runs(path);
  return {SqliteStorage(path).List(), tables.Users(), tables.Tags(),     runs.States(),
          runs.History(std::nullopt), runs.Ledger(1), runs.PauseOfAll(), runs.Audits({})};
}

// Makes a task file of an earlier version; gives back the one task in it.
inline TaskRecord MakeVersion(std::size_t version, const std::string& path) {
  Connection connection(path, kImpatient, Access::kReadWrite);
  Migrate(connection, MigrationSteps().first(1));
  connection.Run(
      "INSERT INTO VeloAutoTasks VALUES (1, 4, '2031-02-03T04:05:06', -2, 0, 'old', '', '', '', '', '', '', "
      "'', '', 1, 0, 0, 0, 0, '1899-12-30T00:00:00', 'q', '')");
  connection.Run("INSERT INTO VeloAutoTaskActions VALUES (1, 1, 'run-sql', 'a', 1, 2, '{}')");
  Migrate(connection, MigrationSteps().first(version));
  connection.PrepareForWriting();
  TaskRecord task;
  task.id = 1;
  task.version = 4;
  task.modified = kNow;
  task.record_mode = -2;
  task.name = "old";
  task.query = "q";
  task.allow_automation_manager = true;
  task.actions = {{"run-sql", "a", 1, 2, {}}};
  return task;
}

// A task whose every text, action and day of its schedule follows from its name, so that half a task shows.
// It replaces the stored task `former`.
inline TaskRecord WholeTask(const std::string& name, const TaskRecord& former = {}) {
  const std::size_t hash = std::hash<std::string>{}(name);
  TaskRecord task;
  task.id = former.id;
  task.version = former.version;
  task.modified = former.modified;
  task.name = name;
  for (std::size_t i = 0; i < hash % 400; ++i) task.description += name + "/";
  task.categories = {{name, hash % 2 == 0}};
  for (std::size_t i = 0; i < hash % 7; ++i) {
    task.actions.push_back({"runProgram", name, 1, 2, {{"path", task.description}}});
  }
  if (hash % 3 != 0) {
    task.recurrence = RecurrenceRecord{.pattern = DailyRecord{static_cast<std::int32_t>(hash % 1000), true}};
    task.schedule_start = std::chrono::local_days{std::chrono::days{hash % 10'000}};
  }
  return task;
}

}  // namespace plovix::test
