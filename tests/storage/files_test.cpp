#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <random>
#include <set>

#include "storage_support.h"

namespace plovix::test {
namespace {

namespace fs = std::filesystem;

// A task file that another program changed; with the change still in its log, as after a crash.
void SaveAndRun(const std::string& path, const std::string& sql, bool leaves_log = false) {
  const TempFolder folder;
  const std::string original = leaves_log ? folder / "original" : path;
  SqliteStorage storage(original);
  storage.Save(WholeTask("a"), kNow);
  RunSql(original, sql);
  if (leaves_log) CopyWithLog(original, path);
}

std::function<void(const std::string& path)> Changed(const char* sql) {
  return [sql](const std::string& path) { SaveAndRun(path, sql); };
}

TEST(Files, ThatCannotBeUsedAreRefusedInWordsAndLeftAsTheyAre) {
  const struct {
    std::string words;
    int number;
    std::function<void(const std::string& path)> make;
    fs::perms file = fs::perms::all, parent = fs::perms::all;
    std::string name = "tasks.sqlite";
  } cases[] = {
      {"not a task file", 321, [](auto& path) { std::ofstream(path) << "Dear diary"; }},
      {"damaged", 321,
       [](auto& path) {
         SaveAndRun(path, "SELECT 1");
         fs::resize_file(path, 5000);
       }},
      {"another program's", 321, [](auto& path) { RunSql(path, "CREATE TABLE T (X)"); }},
      {"another program's", 321, [](auto& path) { RunSql(path, "PRAGMA user_version = 1"); }},
      {"another program's", 321, [](auto& path) { SaveAndRun(path, "PRAGMA application_id = 7", true); }},
      {"trigger \"t\" does not", 321, Changed("CREATE TRIGGER t DELETE ON VeloUsers BEGIN SELECT 1; END")},
      {"view \"v\" does not", 321, Changed("CREATE VIEW v AS SELECT 1")},
      {"\"VeloUsers\" is missing", 321, Changed("ALTER TABLE VeloUsers RENAME TO Other")},
      {"\"VeloAutoTasks\" is missing or", 321, Changed("ALTER TABLE VeloAutoTasks DROP COLUMN Query")},
      {"newer version", 321, [](auto& path) { SaveAndRun(path, "PRAGMA user_version = 99", true); }},
      {"folder, not", 75, [](auto& path) { fs::create_directory(path); }},
      {"second name", 75,
       [](auto& path) {
         SaveAndRun(path, "SELECT 1");
         fs::create_hard_link(path, path + "2");
       }},
      {"folder", 76, [](auto&) {}, fs::perms::all, fs::perms::all, "no/such/file"},
      {"longer than", 76, [](auto&) {}, fs::perms::all, fs::perms::all, std::string(600, 'x')},
      {"name is too long", 76, [](auto&) {}, fs::perms::all, fs::perms::all, std::string(300, 'x')},
      {"may not read", 70, [](auto& path) { std::ofstream{path}; }, fs::perms::none},
      {"write-protected", 70, [](auto& path) { SaveAndRun(path, "SELECT 1"); }, fs::perms{0444}},
      {"into the folder", 70, [](auto& path) { std::ofstream{path}; }, fs::perms::all, fs::perms{0555}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.words);
    const TempFolder folder;
    const std::string path = folder / test.name;
    test.make(path);
    const auto before = folder.Bytes();
    std::error_code error;
    if (fs::exists(path, error)) fs::permissions(path, test.file);
    fs::permissions(folder / ".", test.parent);
    // Rights mean nothing to root, as whom the tests may run.
    const uid_t user = geteuid();
    EXPECT_EQ(seteuid(test.number == 70 && user == 0 ? 65534 : user), 0);
    const Failure failure = FailureOf([&] { const SqliteStorage storage(path); });
    EXPECT_EQ(FailureOf([&] { SqliteUsersAndTags{path}; }).Description(), failure.Description());
    EXPECT_EQ(seteuid(user), 0);
    fs::permissions(folder / ".", fs::perms::all);
    if (fs::exists(path, error)) fs::permissions(path, fs::perms::all);
    for (const std::string& part : {test.words, path})
      EXPECT_NE(failure.Description().find(part), std::string::npos) << failure.Description();
    EXPECT_EQ(failure.Number(), test.number);
    EXPECT_TRUE(folder.Bytes() == before);
  }
}

TEST(Files, OfEarlierVersionsKeepTheirTasksAndTakeWhatIsNew) {
  for (std::size_t version = 1; version < MigrationSteps().size(); ++version) {
    SCOPED_TRACE(version);
    const auto [folder, path] = OwnTaskFile();
    TaskRecord task = MakeVersion(version, path);
    EXPECT_EQ(SqliteStorage(path).List(), std::vector{task});
    task.recurrence = RecurrenceRecord{.pattern = WeeklyRecord{2, {true}}};
    task.permissions = {{"admin", false, true}};
    task = SqliteStorage(path).Save(task, kNow);
    EXPECT_EQ(SqliteStorage(path).List(), std::vector{task});
    EXPECT_EQ(SqliteUsersAndTags(path).Users(), std::vector{FirstAdministrator()});
    ExpectIntact(path);
    // The release that made it refuses it from now on.
    Connection connection(path, kImpatient, Access::kReadOnly);
    EXPECT_EQ(FailureOf([&] { (void)SchemaVersion(connection, static_cast<int>(version)); }).Number(), 321);
  }
}

TEST(Files, OfVersion4KeepWhatTheirUsersCouldDoAndCountTheirRuns) {
  const auto [folder, path] = OwnTaskFile();
  MakeVersion(4, path);
  for (const char* user : {"'maker', '', 0, '[]', 0, 0, 0, 1, 0", "'sharer', '', 0, '[]', 0, 0, 0, 0, 1",
                           "'guest', '', 0, '[]', 1, 1, 1, 0, 0"})
    RunSql(path, std::string("INSERT INTO VeloUsers VALUES (") + user + ")");
  RunSql(
      path,
      "INSERT INTO VeloAutoTaskStates VALUES (1, '', NULL, NULL, 0, 0, 0, 0, 'once', 1, 'skip', 0, 'repeat', "
      "'last', 0, NULL, NULL, NULL)");
  for (int run = 0; run < 3; ++run)
    RunSql(path,
           "INSERT INTO VeloRuns VALUES (NULL, 1, NULL, 'manual', 'failed', 0, 1, 1, 0, 1, 0, 0, 0, '', '', "
           "'[]', 0, 0, 0, 0, 0, NULL, NULL, NULL, '')");
  std::map<std::string, bool> may;
  for (const UserRecord& user : SqliteUsersAndTags(path).Users()) may[user.id] = user.run_programs;
  EXPECT_EQ(may, (std::map<std::string, bool>{
                     {"admin", true}, {"guest", false}, {"maker", true}, {"sharer", true}}));
  EXPECT_EQ(SqliteRunStore(path).State(1)->runs, 3);
  EXPECT_EQ(SqliteStorage(path).Load(1)->saved_by, "");
}

TEST(Files, ThatAreNewAreTheUsersAlone) {
  const auto [folder, path] = OwnTaskFile();
  const mode_t former = umask(0);
  SqliteStorage storage(path);
  storage.Save(WholeTask("a"), kNow);
  umask(former);
  for (const char* suffix : {"", "-wal", "-shm"})
    EXPECT_EQ(fs::status(path + suffix).permissions(), fs::perms{0600}) << suffix;
}

TEST(Files, CopiedAloneHoldWhatWasSavedBeforeTheProgramWasIdleOrEnded) {
  const auto [folder, path] = OwnTaskFile();
  std::vector<TaskRecord> saved;
  std::optional<SqliteStorage> storage(path);
  int copies = 0;
  const auto save = [&] { saved.push_back(storage->Save(WholeTask(std::to_string(saved.size())), kNow)); };
  const auto copy = [&] {
    const std::string to = folder / std::to_string(++copies);
    fs::copy_file(path, to);
    return SqliteStorage(to).List();
  };
  save();
  {
    const Connection other(path, kImpatient, Access::kReadOnly);
    Statement pass = other.Prepare("SELECT Id FROM VeloAutoTasks");
    EXPECT_TRUE(pass.Step());
    save();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(storage->EmptyLog());
    EXPECT_LT(std::chrono::steady_clock::now() - start, kTaskFilePatience / 2) << "nobody is waited for";
    pass.Reset();
    EXPECT_TRUE(storage->EmptyLog());
    EXPECT_EQ(copy(), saved);
    save();
    storage.reset();
    EXPECT_EQ(copy(), saved) << "also while somebody else has the file open";
  }
}

// Every page is overwritten or cut off, and every byte of the header changed.
TEST(Files, ThatAreDamagedAreReadWholeOrRefusedInWords) {
  constexpr std::size_t kPage = 4096, kHeader = 100;
  const std::set<int> expected{failure_number::kInvalidFormat, failure_number::kPermissionDenied};
  const auto [folder, path] = OwnTaskFile();
  for (int i = 0; i < 50; ++i) {  // rows that fit into their pages
    TaskRecord task;
    task.actions = {{"run-sql", std::to_string(i), 1, 2, {{"sql", std::string(300, 'x')}}}};
    SqliteStorage(path).Save(task, kNow);
    SqliteUsersAndTags(path).SaveTag({std::to_string(i), {{"en", std::string(200, 'y')}}}, {});
  }
  const std::string bytes = folder.Bytes().at("tasks.sqlite");
  const Contents whole = ContentsOf(path);
  std::string noise(kPage, 0);
  std::ranges::generate(noise, std::minstd_rand(1));
  std::vector<std::string> damaged;
  for (std::size_t page = 0; page < bytes.size(); page += kPage) {
    for (const std::string& over : {std::string(kPage, 0), std::string(kPage, '\xFF'), noise})
      damaged.push_back(std::string(bytes).replace(page, kPage, over));
    if (page > 0) damaged.push_back(bytes.substr(0, page));
  }
  for (std::size_t at = 0; at < kHeader; ++at) {
    for (const char flips : {'\1', '\x80', '\xFF'}) (damaged.emplace_back(bytes))[at] ^= flips;
  }
  for (const std::string& each : damaged) {
    SCOPED_TRACE(&each - damaged.data());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << each;
    try {
      EXPECT_TRUE(ContentsOf(path) == whole);
      SqliteStorage(path).Save({}, kNow);
    } catch (const Failure& failure) {
      EXPECT_TRUE(expected.contains(failure.Number())) << failure.Description();
      EXPECT_TRUE(failure.Description().starts_with(path)) << failure.Description();
      EXPECT_TRUE(folder.Bytes().at("tasks.sqlite") == each) << failure.Description();
    }
  }
}

}  // namespace
}  // namespace plovix::test
