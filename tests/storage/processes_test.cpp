// What several processes do to one file. The program's main is here: the tests start it once more as the
// other process.
#include <plovix/standalone/storage/manager_lock.h>

#include <QCoreApplication>
#include <QProcess>
#include <algorithm>
#include <iostream>
#include <memory>
#include <set>

#include "storage_support.h"

namespace plovix::test {
namespace {

namespace fs = std::filesystem;

// This program once more: "save PATH PREFIX COUNT", "stay PATH PREFIX COUNT", "lock PATH" or "manage PATH".
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

// Saves whole tasks, every third one twice, and a tag for each; says when each is saved. May stay until it is
// killed.
int SaveTasks(const std::string& path, const std::string& prefix, int count, bool stays) {
  SqliteStorage storage(path);
  SqliteUsersAndTags tables(path);
  for (int i = 0; i < count; ++i) {
    const std::string name = prefix + "-" + std::to_string(i);
    tables.SaveTag({name, {{"en", name}}}, {});
    const TaskRecord saved = storage.Save(WholeTask(name), kNow);
    if (i % 3 == 0) storage.Save(WholeTask(name + "-changed", saved), kNow);
    std::cout << name << std::endl;
  }
  if (stays) std::cin.get();
  return 0;
}

// Keeps everybody from writing until it is killed.
int LockFile(const std::string& path) {
  const Connection connection(path, kImpatient, Access::kReadWrite);
  connection.Run("BEGIN IMMEDIATE");
  std::cout << "locked" << std::endl;
  return std::cin.get();
}

// Runs all that waits, and stays until it is killed. Says which manager it is, then each run and its task.
int Manage(const std::string& path) {
  SqliteRunStore runs(path);
  const ManagerLock lock(runs);
  std::cout << lock.Number() << std::endl;
  while (const auto run = runs.Claim({}, lock.Number())) {
    std::int64_t together = 0;
    for (const RunRecord& each : runs.History(run->task)) together += each.state == RunState::kRunning;
    std::cout << run->id << (together == 1 ? "" : " not alone") << std::endl;
    runs.Finish({run->id, run->epoch, RunState::kSucceeded, {}, {}, "", 0, 0, {}, {}, ""});
  }
  std::cout << std::endl;
  return std::cin.get();
}

TEST(Processes, ShareOneNewFileAndReadWholeTasksMeanwhile) {
  constexpr std::size_t kSaves = 12;
  const auto [folder, path] = OwnTaskFile();
  std::vector<std::unique_ptr<Process>> processes;
  for (const char* prefix : {"a", "b", "c", "d"}) {
    const QStringList words{"save", QString::fromStdString(path), prefix, QString::number(kSaves)};
    processes.push_back(std::make_unique<Process>(words));
  }
  SqliteStorage reader(path);
  for (const auto& process : processes) {
    while (!process->Line().empty())
      for (const TaskRecord& task : reader.List()) EXPECT_EQ(task, WholeTask(task.name, task));
    EXPECT_TRUE(process->Ends());
    EXPECT_EQ(process->exitCode(), 0);
  }
  EXPECT_EQ(reader.List().size(), processes.size() * kSaves);
  EXPECT_EQ(SqliteUsersAndTags(path).Tags().size(), processes.size() * kSaves);
  ExpectIntact(path);
}

// What becomes of a task file that two programs use.
struct Mishap {
  const char* words;  // by which a save is refused
  std::function<void(const std::string& path)> happens;
  bool idle = false;           // there was time to empty the log
  const char* suffix = "";     // of the name by which the other program knows the file
  bool refuses_other = false;  // while nothing was noticed here
};

// Whatever either program acknowledged must be in one of the files afterwards.
void TryMishap(const Mishap& mishap, bool saves_at_once) {
  const auto [folder, path] = OwnTaskFile();
  std::set<std::string> acknowledged, found;
  {
    SqliteStorage storage(path);
    const auto save = [&](const std::string& name) {
      storage.Save(WholeTask(name), kNow);
      acknowledged.insert(name);
    };
    const auto try_to_save = [&] {
      if (*mishap.words == '\0') return save("more" + std::to_string(acknowledged.size()));
      const Failure failure = FailureOf([&] { save("late"); });
      EXPECT_EQ(failure.Number(), failure_number::kFileAccess);
      EXPECT_NE(failure.Description().find(mishap.words), std::string::npos) << failure.Description();
    };
    save("mine");
    EXPECT_TRUE(!mishap.idle || storage.EmptyLog());
    mishap.happens(path);
    if (saves_at_once) try_to_save();
    Process other({"stay", QString::fromStdString(path + mishap.suffix), "other", "4"});
    int saves = 0;
    for (std::string line; saves < 4 && !(line = other.Line()).empty(); ++saves)
      acknowledged.insert(line.substr(0, line.size() - 1));
    const bool has_names = *mishap.suffix != '\0';
    EXPECT_EQ(saves, mishap.refuses_other && (has_names || !saves_at_once) ? 0 : 4);
    other.kill();  // nothing of what it stored is put away
    EXPECT_TRUE(other.Ends());
    try_to_save();
  }
  if (*mishap.suffix != '\0') fs::remove(path + mishap.suffix);
  for (const std::string& file : {path, path + "2"}) {
    if (!fs::exists(file)) continue;
    ExpectIntact(file);
    for (const TaskRecord& task : SqliteStorage(file).List())
      found.insert(task.name.substr(0, task.name.find("-changed")));
  }
  EXPECT_TRUE(std::ranges::includes(found, acknowledged));
}

TEST(Processes, WhoseFilesAreTakenAwayLoseNothingThatTheyAcknowledged) {
  const auto remove = [](std::string_view suffix) {
    return [suffix](const std::string& path) { fs::remove(path + std::string(suffix)); };
  };
  const auto replace = [](const std::string& path) {
    fs::copy_file(path, path + "2");
    fs::rename(path + "2", path);
  };
  const Mishap mishaps[] = {
      {"", [](auto&) {}},
      {"(-shm), was deleted", remove(kSharedMemorySuffix)},
      {"log (-wal)", remove(kLogSuffix), true},
      {"log (-wal)", remove(kLogSuffix), false, "", true},
      {"(-shm), was deleted",
       [](auto& path) {
         fs::remove(path + "-shm");
         fs::remove(path + "-wal");
       },
       true},
      {"moved", [](auto& path) { fs::rename(path, path + "2"); }, true},
      {"replaced", replace, true},
      {"a second name", [](auto& path) { fs::create_hard_link(path, path + "2"); }, false, "2", true}};
  for (const Mishap& mishap : mishaps) {
    for (const bool saves_at_once : {false, true}) {
      SCOPED_TRACE(testing::Message() << mishap.words << saves_at_once);
      TryMishap(mishap, saves_at_once);
    }
  }
}

TEST(Processes, ThatLockTheFileAreNamedAsTheReason) {
  const auto [folder, path] = OwnTaskFile();
  SqliteStorage storage(path, kImpatient);
  SqliteUsersAndTags tables(path, kImpatient);
  const TaskRecord task = storage.Save(WholeTask("a"), kNow);
  Process locker({"lock", QString::fromStdString(path)});
  EXPECT_EQ(locker.Line(), "locked\n");
  const std::function<void()> actions[] = {[&] { storage.Save(WholeTask("b", task), kNow); },
                                           [&] { storage.Delete(task.id, task.version); },
                                           [&] { tables.SaveUsers({FirstAdministrator()}, {}); }};
  for (const auto& action : actions) {
    const Failure failure = FailureOf(action);
    EXPECT_EQ(failure.Number(), failure_number::kPermissionDenied);
    EXPECT_NE(failure.Description().find(path + ": another program is using the file"), std::string::npos);
  }
  EXPECT_EQ(SqliteStorage(path, kImpatient).List(), std::vector{task});
  locker.kill();
  EXPECT_TRUE(locker.Ends());
  EXPECT_EQ(storage.Save(task, kNow).version, 2);
}

TEST(Processes, ThatManageRunOneRunOfATaskAtATimeAndAreDeadOnceTheyAreKilled) {
  constexpr int kRuns = 60;
  const auto [folder, path] = OwnTaskFile();
  SqliteStorage storage(path);
  SqliteRunStore runs(path);
  const ManagerLock lock(runs);
  for (const char* name : {"a", "b"}) storage.Save(WholeTask(name), kNow);
  std::set<std::string> waiting, done;
  for (int i = 0; i < kRuns; ++i) {
    RunRecord run;
    run.task = 1 + i % 2;
    run.origin = RunOrigin::kManual;
    waiting.insert(std::to_string(runs.Request(run).id) + "\n");
  }
  std::vector<std::unique_ptr<Process>> processes;
  std::set<std::int64_t> managers{lock.Number()};
  processes.resize(3);
  for (auto& each : processes)
    each = std::make_unique<Process>(QStringList{"manage", QString::fromStdString(path)});
  for (const auto& process : processes) {
    const std::int64_t number = std::stoll(process->Line());
    EXPECT_TRUE(managers.insert(number).second);
    for (std::string line; (line = process->Line()) != "\n" && !line.empty();)
      EXPECT_TRUE(done.insert(line).second) << line;
    for (const std::int64_t each : managers) EXPECT_TRUE(lock.IsAlive(each));
    const auto living = LivingManagers(runs);
    EXPECT_EQ(std::ranges::count(living, process->processId(), &ManagerRecord::process), 1);
    process->kill();
    EXPECT_TRUE(process->Ends());
    EXPECT_FALSE(lock.IsAlive(number));
    managers.erase(number);
  }
  const auto known = [&runs] { return std::pair(LivingManagers(runs).size(), runs.Managers().size()); };
  EXPECT_EQ(known().first, 1U);
  {
    const ManagerLock another(runs, ManagerKind::kService);
    EXPECT_EQ(known(), std::pair(2UL, 2UL));
    EXPECT_EQ(LivingManagers(runs).back().kind, ManagerKind::kService);
  }
  EXPECT_EQ(known(), std::pair(1UL, 1UL));
  EXPECT_EQ(done, waiting);
  ExpectIntact(path);
}

TEST(Processes, ThatManageNoticeThatTheLockFileIsNotTheirsAndThatNumbersAreTaken) {
  const auto [folder, path] = OwnTaskFile();
  SqliteRunStore runs(path);
  const ManagerLock first(runs);
  RunSql(path, "UPDATE VeloFileSettings SET LastManager = 0");  // as in a copy that was restored
  EXPECT_EQ(first.Number(), 1);
  EXPECT_EQ(ManagerLock(runs).Number(), 2);
  EXPECT_EQ(fs::status(path + "-lock").permissions(), fs::perms{0600});
  EXPECT_TRUE(first.StillMine());
  fs::remove(path + "-lock");
  EXPECT_FALSE(first.StillMine());
  const ManagerLock other(runs);
  EXPECT_FALSE(first.StillMine());
  EXPECT_TRUE(other.StillMine());
  fs::remove(path + "-lock");
  fs::create_symlink(path, path + "-lock");
  EXPECT_NE(FailureOf([&] { const ManagerLock refused(runs); }).Description().find(path + "-lock: "),
            std::string::npos);
}

}  // namespace
}  // namespace plovix::test

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const std::vector<std::string> words(argv, argv + argc);
  using namespace plovix::test;
  if (argc == 5 && (words[1] == "save" || words[1] == "stay")) {
    try {
      return SaveTasks(words[2], words[3], std::stoi(words[4]), words[1] == "stay");
    } catch (const plovix::Failure& refused) {
      std::cerr << refused.Description() << '\n';
      return 1;
    }
  }
  if (argc == 3 && words[1] == "lock") return LockFile(words[2]);
  if (argc == 3 && words[1] == "manage") return Manage(words[2]);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
