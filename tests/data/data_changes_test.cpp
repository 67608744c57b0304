// The SQL statements of actions, on a user's data file.
#include <gmock/gmock.h>
#include <plovix/base/failure.h>
#include <plovix/standalone/data/data_changes.h>
#include <sqlite3.h>

#include <filesystem>
#include <future>
#include <thread>

namespace plovix {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
namespace fs = std::filesystem;

class DataChangesTest : public testing::Test {
 public:
  ~DataChangesTest() override { fs::remove_all(folder_); }

 protected:
  DataChangesTest() {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    // As another program: a connection takes no triggers, which contain a second statement.
    sqlite3* made = nullptr;
    sqlite3_open(path_.c_str(), &made);
    const char* sql =
        "CREATE TABLE t (id INTEGER PRIMARY KEY, a); CREATE TABLE log (what); CREATE TABLE VeloUsers (a);"
        "CREATE TABLE child (t REFERENCES t (id)); CREATE VIEW v AS SELECT a FROM t;"
        "CREATE TRIGGER w AFTER INSERT ON t BEGIN INSERT INTO log VALUES (new.id); END;"
        "CREATE TRIGGER x AFTER DELETE ON log BEGIN DELETE FROM VeloUsers; END;";
    EXPECT_EQ(sqlite3_exec(made, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(made);
  }

  std::string Refusal(DataChanges& changes, const std::string& sql) {
    const auto failure = FailureOf([&] { changes.Run(sql, {}); });
    return failure ? failure->Description() : "";
  }
  [[nodiscard]] std::string Read(const std::string& sql) const {
    return Connection(path_, 50ms, Access::kReadOnly).Text(sql).value_or("NULL");
  }

  fs::path folder_ = fs::temp_directory_path() / ("plovix-changes-" + std::to_string(getpid()));
  std::string path_ = folder_ / "data.sqlite";
};

TEST_F(DataChangesTest, GetValuesWithTheirTypesAndLetTheFilesOwnTriggersAct) {
  DataChanges changes(path_, 50ms);
  const struct {
    FieldValue value;
    const char* stored;
  } cases[] = {{std::int64_t{42}, "integer 42"},
               {1.5, "real 1.5"},
               {std::string("'); DROP TABLE t --"), "text '); DROP TABLE t --"},
               {Blob{std::string("\0\1", 2)}, "blob 0001"},
               {Blob{}, "blob "},
               {std::monostate(), "null "}};
  const auto parsed = ParseStatement("INSERT INTO t VALUES ({Id}, {Value})");
  std::int64_t id = 0;
  for (const auto& row : cases) {
    const RecordValues record = {{"Id", ++id}, {"Value", row.value}};
    changes.Run(parsed.value.sql, ParametersOf(parsed.value, record, {}));
    EXPECT_EQ(
        Read("SELECT typeof(a) || ' ' || CASE typeof(a) WHEN 'blob' THEN hex(a) ELSE ifnull(a, '') END FROM "
             "t WHERE id = " +
             std::to_string(id)),
        row.stored);
  }
  EXPECT_EQ(Read("SELECT count(*) FROM log"), "6");
  EXPECT_EQ(Refusal(changes, "CREATE TABLE archive AS SELECT upper(a) FROM v"), "");
  EXPECT_EQ(Refusal(changes, "DROP TABLE archive"), "");
}

TEST_F(DataChangesTest, AreRefusedInWordsAndChangeNothing) {
  DataChanges changes(path_, 50ms);
  const std::pair<const char*, const char*> cases[] = {
      {"DELETE FROM velousers", "an action may not use the table \"VeloUsers\""},
      {"INSERT INTO t SELECT 5, a FROM VeloUsers", "the table \"VeloUsers\""},
      {"CREATE TABLE VeloX (a)", "the table \"VeloX\""},
      {"CREATE INDEX i ON VeloUsers (a)", "the table \"VeloUsers\""},
      {"DELETE FROM log", "the table \"VeloUsers\""},  // by a trigger
      {"ATTACH '/tmp/x' AS x", "an action may only change data"},
      {"PRAGMA user_version = 5", "not use \"PRAGMA user_version\""},
      {"COMMIT", "an action may only change data"},
      {"VACUUM", "cannot VACUUM from within a transaction"},
      {"ALTER TABLE t RENAME TO u", "an action may only change data"},
      {"CREATE TEMP TABLE y (a)", "an action may only change data"},
      {"SELECT load_extension('x')", "an action may not call the function \"load_extension\""},
      {"DELETE FROM sqlite_master", "may not be modified"},
      {"DELETE FROM t; DELETE FROM log", "more than one statement"},
      {"INSERT INTO child VALUES (7)", "FOREIGN KEY constraint failed"},
      {"INSERT INTO t SELECT 1, 1 UNION ALL SELECT 1, 2", "UNIQUE constraint failed"},
      {"INSERT INTO t SELECT 8, abs(-9223372036854775807 - 1)", "integer overflow"},
      {"DELETE FROM gone", "no such table: gone"}};
  for (const auto& [sql, words] : cases) EXPECT_THAT(Refusal(changes, sql), HasSubstr(words)) << sql;
  EXPECT_EQ(Read("SELECT (SELECT count(*) FROM t) + (SELECT count(*) FROM log)"), "0");
  const auto missing = FailureOf([&] { DataChanges(path_ + "2", 50ms); });
  EXPECT_THAT(missing.value_or(Failure(0, "")).Description(), HasSubstr("the data file does not exist"));
  EXPECT_FALSE(fs::exists(path_ + "2"));
  const Connection other(path_, 50ms, Access::kReadWrite);
  other.Run("BEGIN IMMEDIATE");
  EXPECT_THAT(Refusal(changes, "DELETE FROM t"), HasSubstr("another program is using the file"));
}

TEST_F(DataChangesTest, AreInterruptedFromAnotherThread) {
  DataChanges changes(path_, 50ms);
  const char* endless =
      "INSERT INTO t SELECT NULL, n FROM "
      "(WITH RECURSIVE c (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c) SELECT n FROM c)";
  auto words = std::async(std::launch::async, [&] { return Refusal(changes, endless); });
  EXPECT_EQ(words.wait_for(100ms), std::future_status::timeout);
  changes.Interrupt();
  EXPECT_THAT(words.get(), HasSubstr("the statement was interrupted"));
  EXPECT_THAT(Refusal(changes, "DELETE FROM t"), HasSubstr("the statement was interrupted"));
  EXPECT_EQ(Read("SELECT count(*) FROM t"), "0");
  changes.Resume();
  EXPECT_EQ(Refusal(changes, "INSERT INTO t VALUES (1, 1)"), "");
}

}  // namespace
}  // namespace plovix
