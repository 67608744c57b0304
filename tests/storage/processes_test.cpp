// What several processes do to one file. The program's main is here: the tests start it once more as the
// other process.
#include <QCoreApplication>
#include <QProcess>
#include <iostream>
#include <memory>

#include "storage_support.h"

namespace plovix::test {
namespace {

// This program once more: "save PATH PREFIX COUNT" or "lock PATH".
class Process final : public QProcess {
 public:
  explicit Process(const QStringList& words) {
    setProcessChannelMode(ForwardedErrorChannel);
    start(QCoreApplication::applicationFilePath(), words);
  }
  // The next whole line; empty at the end.
  [[nodiscard]] std::string Line() {
    while (!canReadLine() && waitForReadyRead()) continue;
    return canReadLine() ? readLine().toStdString() : std::string();
  }
  [[nodiscard]] bool Ends() { return waitForFinished() || state() == NotRunning; }
};

// Saves whole tasks, every third one twice, and a tag for each; says when each is saved.
int SaveTasks(const std::string& path, const std::string& prefix, int count) {
  SqliteStorage storage(path);
  SqliteHostTables tables(path);
  for (int i = 0; i < count; ++i) {
    const std::string name = prefix + "-" + std::to_string(i);
    tables.SaveTag({name, {{"en", name}}}, {});
    const TaskRecord saved = storage.Save(WholeTask(name), kNow);
    if (i % 3 == 0) storage.Save(WholeTask(name + "-changed", saved), kNow);
    std::cout << name << std::endl;
  }
  return 0;
}

// Keeps everybody from writing until it is killed.
int LockFile(const std::string& path) {
  const Connection connection(path, kImpatient, Access::kReadWrite);
  connection.Run("BEGIN IMMEDIATE");
  std::cout << "locked" << std::endl;
  return std::cin.get();
}

TEST(Processes, ShareOneNewFileAndReadWholeTasksMeanwhile) {
  constexpr std::size_t kSaves = 12;
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  std::vector<std::unique_ptr<Process>> processes;
  for (const char* prefix : {"a", "b", "c", "d"}) {
    const QStringList words{"save", QString::fromStdString(path), prefix, QString::number(kSaves)};
    processes.push_back(std::make_unique<Process>(words));
  }
  SqliteStorage reader(path);
  for (const auto& process : processes) {
    while (!process->Line().empty()) {
      for (const TaskRecord& task : reader.List()) EXPECT_EQ(task, WholeTask(task.name, task));
    }
    EXPECT_TRUE(process->Ends());
    EXPECT_EQ(process->exitCode(), 0);
  }
  EXPECT_EQ(reader.List().size(), processes.size() * kSaves);
  EXPECT_EQ(SqliteHostTables(path).Tags().size(), processes.size() * kSaves);
  ExpectIntact(path);
}

TEST(Processes, ThatLockTheFileAreNamedAsTheReason) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  SqliteStorage storage(path, kImpatient);
  SqliteHostTables tables(path, kImpatient);
  const TaskRecord task = storage.Save(WholeTask("a"), kNow);
  const std::string old = folder / "old.sqlite";
  const TaskRecord old_task = MakeVersion(1, old);
  Process locker({"lock", QString::fromStdString(path)}), old_locker({"lock", QString::fromStdString(old)});
  EXPECT_EQ(locker.Line() + old_locker.Line(), "locked\nlocked\n");
  const std::pair<std::string, std::function<void()>> actions[] = {
      {path, [&] { storage.Save(WholeTask("b", task), kNow); }},
      {path, [&] { storage.Delete(task.id, task.version); }},
      {path, [&] { tables.SaveUsers({FirstAdministrator()}, {}); }},
      {old, [&] { SqliteStorage(old, kImpatient); }}};
  for (const auto& [file, action] : actions) {
    const Failure failure = FailureOf(action);
    EXPECT_EQ(failure.Number(), failure_number::kPermissionDenied);
    EXPECT_NE(failure.Description().find(file + ": another program is using the file"), std::string::npos);
  }
  EXPECT_EQ(storage.List(), std::vector{task});
  EXPECT_EQ(SqliteStorage(path, kImpatient).List(), std::vector{task});
  for (Process* each : {&locker, &old_locker}) {
    each->kill();
    EXPECT_TRUE(each->Ends());
  }
  EXPECT_EQ(SqliteStorage(old).List(), std::vector{old_task});
  EXPECT_EQ(storage.Save(task, kNow).version, 2);
}

}  // namespace
}  // namespace plovix::test

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const std::vector<std::string> words(argv, argv + argc);
  using namespace plovix::test;
  if (argc == 5 && words[1] == "save") return SaveTasks(words[2], words[3], std::stoi(words[4]));
  if (argc == 3 && words[1] == "lock") return LockFile(words[2]);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
