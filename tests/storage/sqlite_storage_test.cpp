#include <plovix/standalone/model/category_column.h>

#include "storage_support.h"

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
  std::vector<RecurrenceRecord> recurrences{{}};
  for (const PatternRecord& pattern :
       std::initializer_list<PatternRecord>{{},
                                            DailyRecord{kMost, true},
                                            DailyRecord{kLeast, false},
                                            WeeklyRecord{2, {true, false, true, false, true, false, true}},
                                            WeeklyRecord{1, {false, true, true, false, false, true, true}},
                                            WeeklyRecord{0, {false, false, false, true, true, true, true}},
                                            MonthlyRecord{kMost - 3, high},
                                            YearlyRecord{kLeast + 3, low}}) {
    recurrences.push_back({kMost, kLeast, kMost - 1, kLastMoment, pattern});
  }
  return recurrences;
}

// Every text field holds `text`, every other field something that tells it from its neighbours.
TaskRecord FullTask(const std::string& text) {
  TaskRecord task;
  task.record_mode = -32768;
  int number = 0;
  for (std::string* field :
       {&task.name, &task.short_description, &task.description, &task.name_tag, &task.short_description_tag,
        &task.description_tag, &task.data_object_name, &task.data_object_caption, &task.query, &task.owner}) {
    *field = text + std::to_string(++number);
  }
  task.categories = {{text, false}, {"", true}, {text + "2", true}};
  task.permissions = {{text, true, true, false, true, false}, {text, false, false, true, false, true}};
  task.processing_mode = -2147483647 - 1;
  task.base_date = kLastMoment;
  task.actions = {{text + "k", text, 2147483647, -1, {{text, text}, {"b", ""}}}, {"", "", 0, 0, {}}};
  return task;
}

TEST(SqliteStorage, KeepsEveryFieldOverAReopening) {
  const TempFolder folder;
  // SQLite would take an unguarded name for a URI or a file in memory.
  const std::string path = folder / "file:it's %41 #\xC3\xA9?b=c&mode=memory";
  std::vector<TaskRecord> tasks{TaskRecord{}, FullTask("")};
  for (const std::string& text :
       {"plain"s, "'\"; DROP TABLE VeloAutoTasks; --"s, "\0 zero \0"s, "\xFF\xC3 no UTF-8"s,
        "\xEF\xBB\xBF mark"s, "\xED\xA0\x80"s, "\xF4\x8F\xBF\xBF\x38\x30"s, "\xF0\x9F\x98\x80\xD7\xA9"s,
        "\r\n\t"s, "{\"a\":1}"s, "12"s, std::string(300'000, 'x')}) {
    tasks.push_back(FullTask(text));
  }
  for (bool TaskRecord::*const flag : {&TaskRecord::uses_language_tags, &TaskRecord::allow_automation_manager,
                                       &TaskRecord::skip_row_selection, &TaskRecord::process_all_records,
                                       &TaskRecord::process_failed_records, &TaskRecord::may_run,
                                       &TaskRecord::may_edit, &TaskRecord::may_delete}) {
    tasks.push_back(FullTask("flag"));
    tasks.back().*flag ^= true;
    tasks.back().permissions = PermissionSet{};
  }
  for (const RecurrenceRecord& recurrence : Recurrences()) {
    tasks.push_back(FullTask("schedule"));
    tasks.back().recurrence = recurrence;
    if (tasks.size() % 2 == 0) tasks.back().schedule_start = kFirstDay;
  }
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

TEST(SqliteStorage, ReplacesAndDropsTheScheduleWithItsTask) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  SqliteStorage storage(path);
  const Connection other(path, kImpatient, Access::kReadOnly);
  const auto rows = [&] { return other.Integer("SELECT count(*) FROM VeloAutoTaskSchedules"); };
  TaskRecord task = storage.Save(FullTask("a"), kNow);
  for (const RecurrenceRecord& recurrence : Recurrences()) {
    task.recurrence = recurrence;
    task.schedule_start = kFirstDay;
    task = storage.Save(task, kNow);
    EXPECT_EQ(task.recurrence, recurrence);
    EXPECT_EQ(storage.Load(task.id), task);
    EXPECT_EQ(rows(), 1);
  }
  TaskRecord dropped = task;
  dropped.recurrence.reset();
  dropped = storage.Save(dropped, kNow);
  EXPECT_EQ(storage.Load(task.id), dropped);
  EXPECT_EQ(rows(), 0);
  task.version = dropped.version;
  storage.Save(task, kNow);
  EXPECT_EQ(rows(), 1);
  storage.Delete(task.id);
  EXPECT_EQ(rows(), 0);
}

TEST(SqliteStorage, RefusesWhatItCannotRead) {
  const std::pair<std::string, std::string> cases[] = {
      {"PatternKind", "4"},      {"PatternKind", "-1"},   {"PatternKind", "'x'"},
      {"StartDate", "''"},       {"Interval", "1 << 31"}, {"StartDate", "'2026-02-29'"},
      {"ExecutionTime", "'08'"}, {"Sunday", "NULL"},      {"EveryNDays", "1"},
      {"Monday", "'x'"},         {"Permissions", "''"},   {"Permissions", R"('[{"subject":"a"}]')"},
      {"MayRun", "'yes'"},
  };
  for (const auto& [column, value] : cases) {
    const TempFolder folder;
    const std::string path = folder / "tasks.sqlite";
    TaskRecord task;
    task.recurrence = RecurrenceRecord{.pattern = WeeklyRecord{}};
    SqliteStorage storage(path);
    storage.Save(task, kNow);
    const std::string table =
        column == "Permissions" || column == "MayRun" ? "VeloAutoTasks" : "VeloAutoTaskSchedules";
    RunSql(path, "UPDATE " + table + " SET " + column + " = " + value);
    const Failure failure = FailureOf([&] { (void)storage.List(); });
    EXPECT_EQ(failure.Number(), failure_number::kInvalidFormat) << column << value;
    EXPECT_TRUE(failure.Description().ends_with(": task 1 holds an unreadable " + column))
        << failure.Description();
  }
}

TEST(SqliteStorage, RefusesToSaveOverAnothersChange) {
  const TempFolder folder;
  const std::string path = folder / "tasks.sqlite";
  SqliteStorage mine(path), other(path);
  const TaskRecord opened = mine.Save(FullTask("a"), kNow);
  TaskRecord edit = opened;
  edit.actions = {edit.actions[1]};
  edit.categories.clear();
  edit = other.Save(edit, kNow);
  EXPECT_THROW(mine.Save(opened, kNow), TaskConflict);
  EXPECT_EQ(mine.List(), std::vector{edit});
  other.Delete(opened.id);
  EXPECT_THROW(mine.Save(edit, kNow), TaskConflict);
  EXPECT_TRUE(mine.List().empty());
  EXPECT_GT(mine.Save(FullTask("b"), kNow).id, opened.id);
  ExpectIntact(path);
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
  for (; rows->Next(); storage.Save(WholeTask("new"), kNow)) {
    for (std::size_t column = 0; column < rows->Columns(); ++column) seen += rows->Text(column);
  }
  EXPECT_EQ(seen, "aa\0001bb\0002cc\0003"s);
  EXPECT_FALSE(rows->Next());
  EXPECT_EQ(storage.List().size(), 6U);
  for (const char* sql : {"DELETE FROM VeloAutoTasks RETURNING Id", "BEGIN", "SELECT 1; SELECT 2"}) {
    EXPECT_EQ(FailureOf([&] { (void)storage.OpenRows(sql); }).Number(), 5) << sql;
  }
}

TEST(CategoryColumn, ReadsItsArraysAndTakesAnyOtherTextForOneCategory) {
  const std::pair<std::string, std::vector<CategoryRecord>> cases[] = {
      {"", {}},
      {R"([{"tag":"A","public":true},{"tag":"","public":false}])", {{"A", true}, {"", false}}},
      {"[{\"tag\":\"\xC3\xA9\xF0\x9F\x98\x80\x7F\",\"public\":true}]",
       {{"\xC3\xA9\xF0\x9F\x98\x80\x7F", true}}},
      {R"([{"tag":"\"\\\n","public":false},{"tag":"B","public":true}])", {{"\"\\\n", false}, {"B", true}}},
      {"[{\"tag\":\"\xF4\x8F\xBF\xBF"
       "ff\",\"public\":true}]",
       {{"\xFF", true}}},
  };
  for (const auto& [column, categories] : cases) {
    EXPECT_EQ(DecodeCategories(column), categories);
    EXPECT_EQ(EncodeCategories(categories), column);
  }
  EXPECT_TRUE(DecodeCategories("[]").empty());
  for (const std::string& name :
       {"Mail"s, "[1]"s, "42"s, R"({"tag":"A","public":true})"s, R"([{"tag":"A"}])"s,
        R"([{"tag":7,"public":true}])"s, R"([{"tag":"A","public":1}])"s, R"([{"tag":"A","public":true})"s,
        R"([{"tag":"A","public":true}]])"s, "[{\"tag\":\"\xC3\",\"public\":true}]"s,
        "[{\"tag\":\"\t\",\"public\":true}]"s, "\xFF\0["s, "[]\0"s}) {
    EXPECT_EQ(DecodeCategories(name), (std::vector<CategoryRecord>{{name, true}})) << name;
  }
}

}  // namespace
}  // namespace plovix::test
