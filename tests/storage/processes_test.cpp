#include <gtest/gtest.h>
#include <plovix/standalone/storage/connection.h>
#include <plovix/standalone/storage/schema.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <thread>

#include "storage_support.h"

namespace plovix::test {
namespace {

struct Acknowledged {
  std::int64_t version = 0;
  std::string name;
};

// What the killed programs were told to be stored is there, and nothing is there by half.
void Check(const std::string& path, const std::map<std::int64_t, Acknowledged>& acknowledged) {
  std::map<std::int64_t, TaskRecord> found;
  for (TaskRecord& task : SqliteStorage(path).List()) {
    EXPECT_TRUE(IsWhole(task)) << task.id << ' ' << task.name;
    found.emplace(task.id, std::move(task));
  }
  for (const auto& [id, told] : acknowledged) {
    ASSERT_TRUE(found.contains(id)) << id;
    // The last save may have arrived without being told any more.
    EXPECT_GE(found[id].version, told.version) << id;
    if (found[id].version == told.version) {
      EXPECT_EQ(found[id].name, told.name);
    }
  }
  EXPECT_EQ(OtherProgram(path).Run("PRAGMA integrity_check"), "ok");
  EXPECT_FALSE(OtherProgram(path).Run("PRAGMA foreign_key_check").isValid());
}

TEST(Processes, KilledWhileSavingLoseNothingAcknowledged) {
  constexpr int kRounds = 24;
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  std::map<std::int64_t, Acknowledged> acknowledged;
  const auto note = [&acknowledged](const std::string& line) {
    std::istringstream words(line);
    std::int64_t id = 0;
    Acknowledged told;
    words >> id >> told.version >> told.name;
    acknowledged[id] = told;
  };
  for (int round = 0; round < kRounds; ++round) {
    SavingProcess process(path, "round" + std::to_string(round), 0);
    for (int line = 0; line <= round * 2; ++line) note(process.Line());
    std::this_thread::sleep_for(std::chrono::microseconds(round * 37 % 500));
    process.Kill();
    for (std::string line = process.Line(); !line.empty(); line = process.Line()) note(line);
    Check(path, acknowledged);
  }
  EXPECT_GE(acknowledged.size(), static_cast<std::size_t>(kRounds * 8));
}

TEST(Processes, ShareOneNewFileAndReadWholeTasksMeanwhile) {
  constexpr int kSaves = 12;
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  std::vector<std::unique_ptr<SavingProcess>> processes;
  for (const char* prefix : {"a", "b", "c", "d"}) {
    processes.push_back(std::make_unique<SavingProcess>(path, prefix, kSaves));
  }
  for (const auto& process : processes) {
    SqliteStorage reader(path);
    while (!process->Line().empty()) {
      for (const TaskRecord& task : reader.List()) EXPECT_TRUE(IsWhole(task)) << task.name;
    }
    EXPECT_EQ(process->ExitCode(), 0);
  }
  EXPECT_EQ(SqliteStorage(path).List().size(), processes.size() * kSaves);
  Check(path, {});
}

// Long enough for another process to start and come to where it must wait.
constexpr std::chrono::milliseconds kStart{300};

TEST(Processes, WaitForTheOneThatMakesTheTables) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  Connection connection(path, kImpatient, Access::kReadWrite);
  std::vector<const char*> statements(MigrationSteps()[0].begin(), MigrationSteps()[0].end());
  statements.push_back(
      "WITH RECURSIVE N (I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N LIMIT 3000000) "
      "SELECT count(*) FROM N");
  const MigrationStep slow(statements);
  SavingProcess process(path, "a", 1);
  Migrate(connection, {&slow, 1});
  EXPECT_EQ(process.ExitCode(), 0);
}

TEST(Processes, WaitForAReaderBeforeTheyBeginTheLog) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  SqliteStorage{path}.Save(WholeTask("a"), kNow);
  OtherProgram other(path);
  other.Run("PRAGMA journal_mode = DELETE");
  other.Run("BEGIN");
  other.Run("SELECT count(*) FROM VeloAutoTasks");
  SavingProcess process(path, "b", 1);
  std::this_thread::sleep_for(kStart);
  other.Run("COMMIT");
  EXPECT_EQ(process.ExitCode(), 0);
}

}  // namespace
}  // namespace plovix::test
