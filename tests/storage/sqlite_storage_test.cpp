#include <gtest/gtest.h>
#include <plovix/standalone/storage/connection.h>
#include <plovix/standalone/storage/schema.h>

#include <array>
#include <cerrno>
#include <set>

#include "storage_support.h"

namespace plovix::test {
namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

// Runs `action`, which must fail; gives back the failure.
template <class Action>
Failure FailureOf(Action action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure;
  }
  ADD_FAILURE() << "nothing failed";
  return {0, ""};
}

// Every text field holds `text`, every other field something that tells it from its neighbours.
TaskRecord FullTask(const std::string& text) {
  TaskRecord task;
  task.record_mode = -32768;
  task.uses_language_tags = true;
  int number = 0;
  for (std::string* field :
       {&task.name, &task.short_description, &task.description, &task.name_tag, &task.short_description_tag,
        &task.description_tag, &task.data_object_name, &task.data_object_caption, &task.query, &task.owner}) {
    *field = text + std::to_string(++number);
  }
  task.categories = {{text, false}, {"", true}, {text + "2", true}};
  task.skip_row_selection = true;
  task.processing_mode = -2147483647 - 1;
  task.process_failed_records = true;
  task.base_date =
      DateTime{std::chrono::local_days{std::chrono::year{9999} / 12 / 31}} + std::chrono::seconds{86399};
  task.actions = {{text + "k", text, 2147483647, -1, {{text, text}, {"b", ""}}}, {"", "", 0, 0, {}}};
  return task;
}

TEST(SqliteStorage, KeepsEveryFieldOverAReopening) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  std::vector<TaskRecord> tasks{TaskRecord{}, FullTask("")};
  for (const std::string& text :
       {"plain"s, "'\"; DROP TABLE VeloAutoTasks; --"s, "\0 zero \0"s, "\xFF\xC3 no UTF-8"s,
        "\xEF\xBB\xBF mark"s, "\xED\xA0\x80"s, "\xF0\x9F\x98\x80\xD7\xA9"s, "\r\n\t"s, "{\"a\":1}"s, "12"s,
        std::string(300'000, 'x')}) {
    tasks.push_back(FullTask(text));
  }
  TaskRecord inverted = FullTask("");
  for (bool* flag :
       {&inverted.uses_language_tags, &inverted.skip_row_selection, &inverted.process_failed_records,
        &inverted.allow_automation_manager, &inverted.process_all_records}) {
    *flag = !*flag;
  }
  tasks.push_back(inverted);
  {
    SqliteStorage storage(path);
    for (TaskRecord& task : tasks) {
      const TaskRecord saved = storage.Save(task, kNow);
      EXPECT_EQ(saved.modified, kNow);
      EXPECT_EQ(saved.version, task.version + 1);
      task.id = saved.id;
      task.version = saved.version;
      task.modified = kNow;
      EXPECT_EQ(saved, task);
    }
    EXPECT_EQ(storage.List(), tasks);
  }
  SqliteStorage storage(path);
  EXPECT_EQ(storage.List(), tasks);
  for (const TaskRecord& task : tasks) EXPECT_EQ(storage.Load(task.id), task);
  EXPECT_EQ(
      OtherProgram(path).Run("SELECT typeof(Name) || typeof(Category) || Category FROM VeloAutoTasks "
                             "WHERE Name = 'plain1'"),
      R"(texttext[{"tag":"plain","public":false},{"tag":"","public":true},{"tag":"plain2","public":true}])");
}

TEST(SqliteStorage, ReplacesDeletesAndNeverUsesAnIdAgain) {
  const TempFolder folder;
  SqliteStorage storage(folder / "tasks.sqlite");
  const TaskRecord first = storage.Save(FullTask("a"), kNow);
  TaskRecord changed = first;
  changed.actions = {changed.actions[1]};
  changed.categories.clear();
  changed = storage.Save(changed, kNow);
  EXPECT_EQ(storage.Load(first.id), changed);

  storage.Delete(first.id);
  storage.Delete(first.id);
  EXPECT_EQ(storage.Load(first.id), std::nullopt);
  EXPECT_EQ(OtherProgram(folder / "tasks.sqlite").Run("SELECT count(*) FROM VeloAutoTaskActions"), 0);
  EXPECT_GT(storage.Save(FullTask("b"), kNow).id, first.id);
}

TEST(SqliteStorage, RefusesToSaveOverAnothersChange) {
  const TempFolder folder;
  SqliteStorage mine(folder / "tasks.sqlite"), other(folder / "tasks.sqlite");
  const TaskRecord opened = mine.Save(FullTask("a"), kNow);
  TaskRecord edit = opened;
  edit.actions.clear();
  const TaskRecord others = other.Save(edit, kNow);
  EXPECT_THROW(mine.Save(opened, kNow), TaskConflict);
  EXPECT_EQ(mine.Load(opened.id), others);
  other.Delete(opened.id);
  EXPECT_THROW(mine.Save(others, kNow), TaskConflict);
  EXPECT_TRUE(mine.List().empty());
}

TEST(SqliteStorage, RefusesValuesThatDoNotFit) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  SqliteStorage storage(path);
  TaskRecord far;
  far.base_date = DateTime{std::chrono::local_days{std::chrono::year{10000} / 1 / 1}};
  EXPECT_EQ(FailureOf([&] { storage.Save(far, kNow); }).Number(), failure_number::kOverflow);
  EXPECT_TRUE(storage.List().empty());

  const TaskRecord task = storage.Save(FullTask("a"), kNow);
  OtherProgram other(path);
  const struct {
    QString table;
    std::string column;
    QString bad, good;
  } cases[] = {
      {"VeloAutoTasks", "BaseDate", "'2024-02-30T00:00:00'", "'9999-12-31T23:59:59'"},
      {"VeloAutoTasks", "BaseDate", "'2024-02-28 00:00:00'", "'9999-12-31T23:59:59'"},
      {"VeloAutoTasks", "Modified", "'2024-02-28T24:00:00'", "'2031-02-03T04:05:06'"},
      {"VeloAutoTasks", "RecordMode", "32768", "-32768"},
      {"VeloAutoTasks", "ProcessingMode", "'many'", "-2147483648"},
      {"VeloAutoTaskActions", "Capabilities", "4294967296", "CASE Position WHEN 1 THEN -1 ELSE 0 END"},
  };
  for (const auto& test : cases) {
    const QString set = "UPDATE " + test.table + " SET " + QString::fromStdString(test.column) + " = ";
    other.Run(set + test.bad);
    const Failure failure = FailureOf([&] { (void)storage.List(); });
    EXPECT_EQ(failure.Number(), failure_number::kInvalidFormat);
    EXPECT_NE(failure.Description().find(test.table == "VeloAutoTasks" ? test.column : "action"),
              std::string::npos);
    other.Run(set + test.good);
    EXPECT_EQ(storage.Load(task.id), task);
  }
}

TEST(SqliteStorage, TellsOfADamagedFileRatherThanListLess) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  {
    SqliteStorage storage(path);
    for (int i = 0; i < 100; ++i) storage.Save(WholeTask(std::to_string(i)), kNow);
  }
  std::string bytes = folder.Bytes().at("tasks.sqlite");
  const std::size_t half = bytes.size() / 2;
  WriteFile(path, bytes.replace(half, half, half, '\xA5'));
  SqliteStorage storage(path);
  EXPECT_NE(FailureOf([&] { (void)storage.List(); }).Description().find("damaged"), std::string::npos);
}

TEST(SqliteStorage, WaitsForAnotherWriterAndThenSaysSo) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  {
    OtherProgram other(path);
    other.Run("BEGIN IMMEDIATE");
    const Failure failure = FailureOf([&] { SqliteStorage storage(path, kImpatient); });
    EXPECT_EQ(failure.Number(), failure_number::kPermissionDenied);
  }
  SqliteStorage storage(path, kImpatient);
  const TaskRecord task = storage.Save(FullTask("a"), kNow);
  OtherProgram other(path);
  other.Run("BEGIN IMMEDIATE");
  for (const auto& action : std::initializer_list<std::function<void()>>{[&] { storage.Save(task, kNow); },
                                                                         [&] { storage.Delete(task.id); }}) {
    const Failure failure = FailureOf(action);
    EXPECT_EQ(failure.Number(), failure_number::kPermissionDenied);
    EXPECT_NE(failure.Description().find(path + ": another program is using the file"), std::string::npos);
  }
  EXPECT_EQ(storage.List(), std::vector{task});
  SqliteStorage reader(path, kImpatient);
  EXPECT_EQ(reader.List(), std::vector{task});
  other.Run("ROLLBACK");
  EXPECT_EQ(storage.Save(task, kNow).version, 2);
}

TEST(SqliteStorage, NoticesThatItsFileIsGone) {
  const struct { std::string_view what, moved; } cases[] = {{"file", ""}, {"log", kLogSuffix}};
  for (const auto& test : cases) {
    const TempFolder folder;
    SqliteStorage storage(folder / "tasks.sqlite");
    const TaskRecord task = storage.Save(FullTask("a"), kNow);
    const std::string moved = folder / ("tasks.sqlite" + std::string(test.moved));
    fs::rename(moved, moved + ".away");
    const Failure failure = FailureOf([&] { storage.Save(task, kNow); });
    EXPECT_EQ(failure.Number(), failure_number::kFileAccess) << test.what;
    WriteFile(moved, "");
    EXPECT_EQ(FailureOf([&] { storage.Delete(task.id); }).Number(), failure_number::kFileAccess) << test.what;
    fs::rename(moved + ".away", moved);
    EXPECT_EQ(storage.Save(task, kNow).version, 2) << test.what;
  }
}

// Every single write and sync of a save fails, once and from then on, as a full and as a broken disk.
TEST(SqliteStorage, SavesAllOrNothingOnAFailingDisk) {
  std::set<std::pair<int, int>> failures;
  for (const int error : {ENOSPC, EIO}) {
    for (const bool for_ever : {false, true}) {
      for (int call = 1, happened = 1; happened != 0; ++call) {
        const TempFolder folder;
        const std::string path = folder / "tasks.sqlite";
        TaskRecord before, after;
        bool saved = false;
        {
          SqliteStorage storage(path);
          before = storage.Save(WholeTask("before"), kNow);
          TaskRecord edit = WholeTask("after");
          edit.id = before.id;
          edit.version = before.version;
          {
            const DiskFault fault(error, call, for_ever);
            try {
              after = storage.Save(edit, kNow);
              saved = true;
            } catch (const Failure& failure) {
              failures.insert({error, failure.Number()});
            }
            happened = fault.Happened() ? 1 : 0;
          }
          EXPECT_EQ(storage.Load(before.id), saved ? after : before) << error << ' ' << call;
          // In every other round the program ends right after the failure.
          if (!saved && call % 2 == 0) {
            after = storage.Save(edit, kNow);
            saved = true;
          }
        }
        EXPECT_EQ(SqliteStorage(path).List(), std::vector{saved ? after : before}) << error << ' ' << call;
        EXPECT_EQ(OtherProgram(path).Run("PRAGMA integrity_check"), "ok");
      }
    }
  }
  // Syncing fails as a broken disk whatever the reason is.
  const std::set<std::pair<int, int>> expected{{ENOSPC, failure_number::kDiskFull},
                                               {ENOSPC, failure_number::kDeviceError},
                                               {EIO, failure_number::kDeviceError}};
  EXPECT_EQ(failures, expected);
}

TEST(SqliteStorage, CreatesItsTablesAllOrNothingOnAFailingDisk) {
  int failures = 0;
  for (const bool for_ever : {false, true}) {
    for (int call = 1, happened = 1; happened != 0; ++call) {
      const TempFolder folder;
      {
        const DiskFault fault(EIO, call, for_ever);
        try {
          const SqliteStorage storage(folder / "tasks.sqlite");
        } catch (const Failure&) {
          ++failures;
        }
        happened = fault.Happened() ? 1 : 0;
      }
      SqliteStorage storage(folder / "tasks.sqlite");
      EXPECT_TRUE(storage.List().empty());
      EXPECT_EQ(storage.Save(FullTask("a"), kNow).id, 1);
    }
  }
  EXPECT_GT(failures, 10);
}

TEST(Connection, AsksTheFileWhetherAFailedCommitArrived) {
  const TempFolder folder;
  Connection connection(folder / "file.sqlite", kImpatient, Access::kReadWrite);
  connection.Run("CREATE TABLE T (Value)");
  const auto rows = [&] { return connection.Value("SELECT count(*) FROM T").toInt(); };
  // The transaction that is over already makes the commit itself fail.
  const auto insert_and = [&](const char* end) {
    return [&connection, end] {
      connection.Run("INSERT INTO T VALUES (1)");
      connection.Run(end);
    };
  };
  connection.Write(insert_and("COMMIT"), [&] { return rows() == 1; });
  EXPECT_EQ(rows(), 1);
  (void)FailureOf([&] { connection.Write(insert_and("ROLLBACK"), [&] { return rows() == 2; }); });
  EXPECT_EQ(rows(), 1);
  const auto unreadable = []() -> bool { throw Failure(failure_number::kDeviceError, "gone"); };
  const Failure failure = FailureOf([&] { connection.Write(insert_and("COMMIT"), unreadable); });
  EXPECT_NE(failure.Description().find("not known"), std::string::npos);

  // A commit that fails and leaves the transaction open.
  connection.Run("PRAGMA foreign_keys = ON");
  connection.Run(
      "CREATE TABLE U (Value INTEGER PRIMARY KEY, Other REFERENCES U DEFERRABLE INITIALLY DEFERRED)");
  const auto missing = [&] { connection.Run("INSERT INTO U VALUES (1, 2)"); };
  for (int i = 0; i < 2; ++i) {
    EXPECT_NE(
        FailureOf([&] { connection.Write(missing, [] { return false; }); }).Description().find("FOREIGN KEY"),
        std::string::npos);
  }
}

TEST(Connection, ReadsOneStateWhileOthersWrite) {
  const TempFolder folder;
  Connection connection(folder / "file.sqlite", kImpatient, Access::kReadWrite);
  connection.Run("CREATE TABLE T (Value)");
  connection.PrepareForWriting();
  OtherProgram other(folder / "file.sqlite");
  const auto rows = [&] { return connection.Value("SELECT count(*) FROM T").toInt(); };
  connection.Read([&] {
    EXPECT_EQ(rows(), 0);
    other.Run("INSERT INTO T VALUES (1)");
    EXPECT_EQ(rows(), 0);
  });
  EXPECT_EQ(rows(), 1);
}

TEST(Schema, MigratesInOneTransactionFromAnyVersion) {
  constexpr std::array kFirst{"CREATE TABLE A (X)", "INSERT INTO A VALUES (1)"};
  constexpr std::array kSecond{"ALTER TABLE A ADD COLUMN Y", "UPDATE A SET Y = X + 1"};
  constexpr std::array kBroken{"UPDATE A SET Y = 7", "INSERT INTO Nowhere VALUES (1)"};
  const std::array<MigrationStep, 3> broken{kFirst, kSecond, kBroken};
  const std::span<const MigrationStep> steps(broken);
  for (const std::size_t start : {0U, 1U, 2U}) {
    const TempFolder folder;
    Connection connection(folder / "file.sqlite", kImpatient, Access::kReadWrite);
    if (start != 0) Migrate(connection, steps.first(start));
    (void)FailureOf([&] { Migrate(connection, steps); });
    EXPECT_EQ(SchemaVersion(connection, 3), static_cast<int>(start));
    Migrate(connection, steps.first(2));
    Migrate(connection, steps.first(2));
    EXPECT_EQ(SchemaVersion(connection, 3), 2);
    EXPECT_EQ(connection.Value("SELECT count(*) || ' ' || max(Y) FROM A"), "1 2");
  }
}

}  // namespace
}  // namespace plovix::test
