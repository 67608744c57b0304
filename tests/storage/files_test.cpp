#include <plovix/standalone/storage/sqlite_host_tables.h>
#include <unistd.h>

#include "storage_support.h"

namespace plovix::test {
namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

void SaveAndRun(const std::string& path, const std::string& sql) {
  SqliteStorage(path).Save(WholeTask("a"), kNow);
  RunSql(path, sql);
}

// A task file whose last change is still in its log, as after a crash.
void SaveAndLeaveLog(const std::string& path, const std::string& sql) {
  const TempFolder folder;
  SqliteStorage storage(folder / "original");
  storage.Save(WholeTask("a"), kNow);
  RunSql(folder / "original", sql);
  for (const std::string& suffix : {""s, std::string(kLogSuffix)}) {
    fs::copy_file(folder / ("original" + suffix), path + suffix);
  }
}

TEST(Files, ThatCannotBeUsedAreRefusedInWordsAndLeftAsTheyAre) {
  constexpr uid_t kNobody = 65534;
  constexpr fs::perms kRead{0444}, kReadAndEnter{0555};
  const struct {
    std::string words;
    int number;
    std::function<void(const std::string& path)> make;
    fs::perms file = fs::perms::all, parent = fs::perms::all;
  } cases[] = {
      {"not a task file", 321, [](auto& path) { std::ofstream(path) << "Dear diary"; }},
      {"damaged", 321,
       [](auto& path) {
         SaveAndRun(path, "SELECT 1");
         fs::resize_file(path, 5000);
       }},
      {"another program's", 321, [](auto& path) { RunSql(path, "CREATE TABLE T (X)"); }},
      {"another program's", 321, [](auto& path) { RunSql(path, "PRAGMA user_version = 1"); }},
      {"another program's", 321, [](auto& path) { SaveAndRun(path, "PRAGMA application_id = 0"); }},
      {"another program's", 321, [](auto& path) { SaveAndLeaveLog(path, "PRAGMA application_id = 7"); }},
      {"newer version", 321, [](auto& path) { SaveAndRun(path, "PRAGMA user_version = 4"); }},
      {"newer version", 321, [](auto& path) { SaveAndLeaveLog(path, "PRAGMA user_version = 99"); }},
      {"folder, not", 75, [](auto& path) { fs::create_directory(path); }},
      {"folder", 76, [](auto&) {}},
      {"may not read", 70, [](auto& path) { std::ofstream{path}; }, fs::perms::none},
      {"write-protected", 70, [](auto& path) { SaveAndRun(path, "SELECT 1"); }, kRead},
      {"into the folder", 70, [](auto& path) { std::ofstream{path}; }, fs::perms::all, kReadAndEnter},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.words);
    const TempFolder folder;
    const std::string path = folder / (test.number == 76 ? "no/such/file" : "tasks.sqlite");
    test.make(path);
    const auto before = folder.Bytes();
    if (fs::exists(path)) fs::permissions(path, test.file);
    fs::permissions(folder / ".", test.parent);
    // Rights mean nothing to root, as whom the tests may run.
    const uid_t user = geteuid();
    EXPECT_EQ(seteuid(test.number == 70 && user == 0 ? kNobody : user), 0);
    const Failure failure = FailureOf([&] { const SqliteStorage storage(path); });
    EXPECT_EQ(seteuid(user), 0);
    fs::permissions(folder / ".", fs::perms::all);
    if (fs::exists(path)) fs::permissions(path, fs::perms::all);
    EXPECT_NE(failure.Description().find(test.words), std::string::npos) << failure.Description();
    EXPECT_NE(failure.Description().find(path), std::string::npos) << failure.Description();
    EXPECT_EQ(failure.Number(), test.number);
    EXPECT_TRUE(folder.Bytes() == before);
  }
}

TEST(Files, OfEarlierVersionsKeepTheirTasksAndTakeWhatIsNew) {
  for (std::size_t version = 1; version < MigrationSteps().size(); ++version) {
    SCOPED_TRACE(version);
    const TempFolder folder;
    const std::string path = folder / "tasks.sqlite";
    TaskRecord task = MakeVersion(version, path);
    EXPECT_EQ(SqliteStorage(path).List(), std::vector{task});
    task.recurrence = RecurrenceRecord{.pattern = WeeklyRecord{2, {true}}};
    task.permissions = {{"admin", false, true}};
    task = SqliteStorage(path).Save(task, kNow);
    EXPECT_EQ(SqliteStorage(path).List(), std::vector{task});
    EXPECT_EQ(SqliteHostTables(path).Users(), std::vector{FirstAdministrator()});
    ExpectIntact(path);
    // The release that made it refuses it from now on.
    Connection connection(path, kImpatient, Access::kReadOnly);
    EXPECT_EQ(FailureOf([&] { (void)SchemaVersion(connection, static_cast<int>(version)); }).Number(), 321);
  }
}

}  // namespace
}  // namespace plovix::test
