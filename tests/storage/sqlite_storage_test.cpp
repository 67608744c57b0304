#include <plovix/standalone/storage/settings_column.h>
#include <plovix/standalone/tasks/category_column.h>

#include "storage_support.h"
#include "tests/support/full_task.h"

namespace plovix::test {
namespace {

using namespace std::string_literals;

constexpr std::chrono::local_days kFirstDay{std::chrono::year{0} / 1 / 1};
constexpr DateTime kLastMoment =
    std::chrono::local_days{std::chrono::year{9999} / 12 / 31} + std::chrono::seconds{86399};

// With every pattern and without one, up to the limits, every number told from its neighbours.
std::vector<RecurrenceRecord> Recurrences() {
  constexpr std::int32_t kLeast = -2147483647 - 1, kMost = 2147483647;
  const DayChoice low{false, kLeast, kLeast + 1, kLeast + 2}, high{true, kMost, kMost - 1, kMost - 2};
  const PatternRecord patterns[] = {PatternRecord{},
                                    DailyRecord{kMost, true},
                                    DailyRecord{kLeast, false},
                                    WeeklyRecord{2, {true, false, true, false, true, false, true}},
                                    WeeklyRecord{1, {false, true, true, false, false, true, true}},
                                    WeeklyRecord{0, {false, false, false, true, true, true, true}},
                                    MonthlyRecord{kMost - 3, high},
                                    YearlyRecord{kLeast + 3, low}};
  std::vector<RecurrenceRecord> recurrences{{}};
  for (const PatternRecord& pattern : patterns)
    recurrences.push_back({kMost, kLeast, kMost - 1, kLastMoment, pattern});
  return recurrences;
}

TEST(SqliteStorage, KeepsEveryFieldOverAReopening) {
  const TempFolder folder;
  // SQLite would take an unguarded name for a URI or a file in memory.
  const std::string path = folder / "file:it's %41 #\xC3\xA9?b=c&mode=memory";
  std::vector<TaskRecord> tasks{TaskRecord{}, FullTask({}, "")};
  for (const std::string& text :
       {"'\"; DROP TABLE VeloAutoTasks; --"s, "\0 zero \0"s, "\xFF\xC3 no UTF-8"s, "\xEF\xBB\xBF mark"s,
        "\xF4\x8F\xBF\xBF\x38\x30\r\n\t"s, "12"s, std::string(900, 'x')}) {
    tasks.push_back(FullTask({}, text));
    tasks.back().name = text;
  }
  ForEachField(kTaskFields, [&](std::string_view, auto field) {
    auto& value = tasks.emplace_back(FullTask()).*field;
    if constexpr (std::is_same_v<decltype(value), bool&>) value = !value;
    tasks.back().owner = "o";
    tasks.back().permissions = PermissionSet{};
  });
  for (TaskRecord& task : tasks) {
    const TaskRecord saved = SqliteStorage(path).Save(task, kNow);
    task.id = saved.id;
    task.version = 1;
    task.modified = kNow;
    EXPECT_EQ(saved, task);
  }
  SqliteStorage storage(path);
  EXPECT_EQ(storage.List(), tasks);
  for (const TaskRecord& task : tasks) EXPECT_EQ(storage.Load(task.id), task);
}

TEST(SqliteStorage, ReplacesAndDropsTheScheduleAndTheActionsWithTheirTask) {
  const auto [folder, path] = OwnTaskFile();
  SqliteStorage storage(path);
  const Connection other(path, kImpatient, Access::kReadOnly);
  TaskRecord task = storage.Save(FullTask(), kNow);
  std::vector<std::optional<RecurrenceRecord>> schedules{{}};
  for (const RecurrenceRecord& recurrence : Recurrences()) schedules.insert(schedules.end() - 1, recurrence);
  schedules.push_back(schedules[0]);
  for (const auto& schedule : schedules) {
    task.recurrence = schedule;
    task.schedule_start = schedule && !task.schedule_start ? std::optional(kFirstDay) : std::nullopt;
    task.actions.resize(schedule ? 2 : 1);
    const TaskRecord saved = storage.Save(task, kNow);
    task.version = saved.version;
    EXPECT_EQ(saved, task);
    EXPECT_EQ(SqliteStorage(path).Load(task.id), task);
    EXPECT_EQ(other.Integer("SELECT count(*) FROM VeloAutoTaskSchedules"), schedule ? 1 : 0);
  }
  EXPECT_THROW(storage.Delete(task.id, 1), TaskConflict);
  storage.Delete(task.id, task.version);
  EXPECT_EQ(other.Integer("SELECT count(*) FROM VeloAutoTaskSchedules"), 0);
  EXPECT_GT(storage.Save(FullTask(), kNow).id, task.id) << "no number comes twice";
}

TEST(SqliteStorage, NamesWhatItCannotReadAndListsTheRest) {
  const std::string tasks = "VeloAutoTasks", schedules = "VeloAutoTaskSchedules",
                    actions = "VeloAutoTaskActions", deep(65'000, '[');
  const struct {
    std::string table, column, value, named = column;
  } cases[] = {
      {schedules, "PatternKind", "4"},
      {schedules, "PatternKind", "-1"},
      {schedules, "PatternKind", "'x'"},
      {schedules, "Interval", "1 << 31"},
      {schedules, "StartDate", "'2026-02-29'"},
      {schedules, "ExecutionTime", "'08'"},
      {schedules, "Sunday", "NULL"},
      {schedules, "EveryNDays", "1"},
      {tasks, "Permissions", "''"},
      {tasks, "Permissions", R"('[{"subject":"a"}]')"},
      {tasks, "MayRun", "'yes'"},
      {tasks, "Version", "'x'"},
      {tasks, "Permissions", "'" + deep + "'"},
      {actions, "RecordModes", "'x'", "action"},
  };
  for (const auto& [table, column, value, named] : cases) {
    SCOPED_TRACE(column + value.substr(0, 20));
    const auto [folder, path] = OwnTaskFile();
    SqliteStorage storage(path);
    TaskRecord task;
    task.name = "named";
    task.recurrence = RecurrenceRecord{.pattern = WeeklyRecord{}};
    task.actions = {{"run-sql", "a", 1, 2, {}}};
    storage.Save(task, kNow);
    const TaskRecord whole = storage.Save(task, kNow);
    RunSql(path, "UPDATE " + table + " SET " + column + " = " + value + " WHERE " +
                     (table == tasks ? "Id" : "TaskId") + " = 1");
    for (const std::function<void()>& read :
         {std::function<void()>([&] { (void)storage.List(); }), {[&] { (void)storage.Load(1); }}}) {
      const Failure failure = FailureOf(read);
      EXPECT_EQ(failure.Number(), failure_number::kInvalidFormat);
      EXPECT_TRUE(failure.Description().ends_with(": task 1 holds an unreadable " + named));
    }
    std::string told;
    EXPECT_EQ(storage.ListReadable(
                  [&](const UnreadableTask& unreadable) { told = unreadable.task.name + unreadable.column; }),
              std::vector{whole});
    EXPECT_EQ(told, "named" + named);
  }
}

TEST(SqliteStorage, GoesOnWhereNumbersRunOut) {
  const std::string most = "9223372036854775807";
  const auto [folder, path] = OwnTaskFile();
  SqliteStorage storage(path);
  TaskRecord task = storage.Save(FullTask(), kNow);
  RunSql(path, "UPDATE VeloAutoTasks SET Version = " + most);
  for (const std::int64_t version : {1, 2}) {
    task = storage.Save(*storage.Load(task.id), kNow);
    EXPECT_EQ(task.version, version);
  }
  for (const char* sql : {"UPDATE sqlite_sequence SET seq = ", "UPDATE VeloAutoTasks SET Id = "}) {
    RunSql(path, sql + most);
    const Failure failure = FailureOf([&] { storage.Save({}, kNow); });
    EXPECT_EQ(failure.Number(), failure_number::kOverflow);
    EXPECT_NE(failure.Description().find("highest number"), std::string::npos) << failure.Description();
    RunSql(path, "UPDATE sqlite_sequence SET seq = 1");
  }
}

TEST(SqliteStorage, WalksThroughRowsWithoutHoldingUpSaves) {
  const TempFolder folder;
  SqliteStorage storage(folder / "tasks.sqlite", kImpatient);
  for (const char* name : {"a", "b", "c"}) storage.Save(WholeTask(name), kNow);
  const auto rows =
      storage.OpenRows("SELECT Name, CAST(Name || char(0) AS BLOB), Id, NULL AS N FROM VeloAutoTasks");
  ASSERT_EQ(rows->Columns(), 4U);
  EXPECT_EQ(rows->Name(3), "N");
  std::string seen;
  for (; rows->Next(); storage.Save(WholeTask("new"), kNow))
    for (std::size_t column = 0; column < rows->Columns(); ++column) seen += rows->Text(column);
  EXPECT_EQ(seen, "aa\0001bb\0002cc\0003"s);
  EXPECT_FALSE(rows->Next());
  EXPECT_EQ(storage.List().size(), 6U);
  for (const char* sql : {"DELETE FROM VeloAutoTasks RETURNING Id", "BEGIN", "SELECT 1; SELECT 2"}) {
    EXPECT_EQ(FailureOf([&] { (void)storage.OpenRows(sql); }).Number(), 5) << sql;
  }
}

// As another program may have written it: nothing of it is dropped, and nothing runs out of stack.
TEST(SettingsColumn, TakesAnyOtherTextForOneSetting) {
  std::string deep = R"({"a":)";
  deep.append(65'000, '[').append(65'000, ']').append("}");
  for (const std::string& text : {"Mail"s, "[]"s, "{}\0{}"s, deep})
    EXPECT_EQ(DecodeSettings(text), (std::map<std::string, std::string>{{"", text}}));
  EXPECT_EQ(DecodeSettings(R"({"a":[1,{"b":[]}],"c":"]"})"),
            (std::map<std::string, std::string>{{"a", R"([1,{"b":[]}])"}, {"c", "]"}}));
}

TEST(CategoryColumn, TakesAnyOtherTextForOneCategory) {
  for (const std::string& name :
       {"Mail"s, "[1]"s, R"({"tag":"A","public":true})"s, R"([{"tag":"A"}])"s,
        R"([{"tag":7,"public":true}])"s, R"([{"tag":"A","public":1}])"s, R"([{"tag":"A","public":true}]])"s,
        "[{\"tag\":\"\xC3\",\"public\":true}]"s, "[{\"tag\":\"\t\",\"public\":true}]"s, "[]\0"s}) {
    EXPECT_EQ(DecodeCategories(name), (std::vector<CategoryRecord>{{name, true}})) << name;
  }
  EXPECT_EQ(EncodeCategories({{"", true}}), "");
  // As older files and people write them.
  EXPECT_TRUE(DecodeCategories(R"([{"tag":"","public":true}])").empty());
  EXPECT_EQ(DecodeCategories(R"( [{"public":true,"tag":"\u0041"}])"),
            (std::vector<CategoryRecord>{{"A", true}}));
}

}  // namespace
}  // namespace plovix::test
