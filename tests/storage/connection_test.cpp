#include <unistd.h>

#include "storage_support.h"

namespace plovix::test {
namespace {

namespace fs = std::filesystem;

struct File {
  explicit File(bool with_log) {  // or with a journal
    Connection connection(path, kImpatient, Access::kReadWrite);
    if (with_log) connection.PrepareForWriting();
    connection.Run("CREATE TABLE T (X)");
    connection.Run("INSERT INTO T VALUES (1), (2)");
  }
  [[nodiscard]] std::size_t Entries() const {
    const fs::directory_iterator entries(folder / ".");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }
  TempFolder folder;
  std::string path = folder / "data ?%41#.sqlite";
};

TEST(Connection, ForReadingLeavesNothingBehindAndNeedsNoRightToWrite) {
  for (const bool with_log : {false, true}) {
    const File file(with_log);
    const auto before = file.folder.Bytes();
    fs::permissions(file.path, fs::perms{0444});
    fs::permissions(file.folder / ".", fs::perms{0555});
    const uid_t user = geteuid();
    EXPECT_EQ(seteuid(user == 0 ? 65534 : user), 0);
    {
      const Connection connection(file.path, kImpatient, Access::kReadOnly, "data file");
      EXPECT_EQ(connection.Integer("SELECT sum(X) FROM T"), 3);
      EXPECT_EQ(file.Entries(), 1U);
    }
    EXPECT_EQ(seteuid(user), 0);
    fs::permissions(file.folder / ".", fs::perms::all);
    fs::permissions(file.path, fs::perms::all);
    const Connection connection(file.path, kImpatient, Access::kReadOnly);
    for (const char* sql : {"INSERT INTO T VALUES (3)", "CREATE TEMP TABLE U (X)",
                            "PRAGMA journal_mode = DELETE", "BEGIN IMMEDIATE"}) {
      EXPECT_FALSE(connection.Prepare(sql).IsReadOnly());
      EXPECT_EQ(FailureOf([&] { connection.Run(sql); }).Number(), failure_number::kPermissionDenied) << sql;
    }
    EXPECT_NE(FailureOf([&] { connection.Run("ATTACH '" + file.path + "2' AS B"); }).Number(), 0);
    EXPECT_EQ(file.Entries(), 1U);
    EXPECT_TRUE(file.folder.Bytes() == before);
  }
}

TEST(Connection, ForReadingNoticesWhatOthersWrite) {
  const File file(true);
  const Connection reader(file.path, kImpatient, Access::kReadOnly);
  {
    Statement pass = reader.Prepare("SELECT X FROM T");
    EXPECT_TRUE(pass.Step());
    RunSql(file.path, "INSERT INTO T VALUES (3)");
    const Failure failure = FailureOf([&] { pass.Run(); });
    EXPECT_NE(failure.Description().find("another program changed the file"), std::string::npos);
  }
  Connection writer(file.path, kImpatient, Access::kReadWrite);
  writer.Run("INSERT INTO T VALUES (4)");  // stays in the log
  EXPECT_EQ(reader.Integer("SELECT sum(X) FROM T"), 10);
}

TEST(Connection, GivesTheDatabasesWordsForSqlThatFails) {
  const File file(false);
  const Connection connection(file.path, kImpatient, Access::kReadOnly);
  const struct {
    std::string sql, words;
    int offset;
  } cases[] = {
      {"SELECT X, Y FROM T", "no such column: Y", 10},
      {"SELEC", "near \"SELEC\": syntax error", 0},
      {"SELECT abs(-9223372036854775807 - 1)", "integer overflow", -1},
      {" -- nothing", "the SQL text holds no statement", -1},
      {std::string("SELECT 1\0", 9), "the SQL text holds a zero byte", -1},
      {"SELECT 1; SELEC", "the SQL text holds more than one statement", -1},
  };
  for (const auto& [sql, words, offset] : cases) {
    try {
      connection.Run(sql);
      ADD_FAILURE() << sql;
    } catch (const SqlFailure& failure) {
      EXPECT_EQ(failure.Words(), words);
      EXPECT_EQ(failure.Offset(), offset) << sql;
      EXPECT_TRUE(failure.Description().starts_with(file.path)) << failure.Description();
    }
  }
  EXPECT_EQ(connection.Integer("SELECT 1; -- and /* no */ more\n;"), 1);
}

}  // namespace
}  // namespace plovix::test
