#include "sqlite_storage.h"

#include <plovix/standalone/model/text_limits.h>
#include <plovix/standalone/sqlite/sql_rows.h>

#include <span>
#include <utility>

#include "settings_column.h"
#include "task_columns.h"

namespace plovix {
namespace {

std::string Select(std::string columns, std::span<const TaskColumn> more, std::string_view rest) {
  for (const TaskColumn& column : more) columns.append(", ").append(column.name);
  return "SELECT " + columns + " FROM " + std::string(rest);
}

std::string SelectTasks(std::string_view rest) {
  return Select("Id, Version", TaskColumns(), "VeloAutoTasks " + std::string(rest));
}

std::string SelectSchedules(std::string_view rest) {
  return Select("TaskId", ScheduleColumns(), "VeloAutoTaskSchedules " + std::string(rest));
}

std::string SelectActions(std::string_view rest) {
  return "SELECT TaskId, RecordModes, Capabilities, Kind, Name, Settings FROM VeloAutoTaskActions " +
         std::string(rest);
}

std::string InsertInto(std::string_view table, std::string_view first, std::span<const TaskColumn> more) {
  std::string names(first), values = "?";
  for (const TaskColumn& column : more) {
    names.append(", ").append(column.name);
    values += ", ?";
  }
  return "INSERT INTO " + std::string(table) + " (" + names + ") VALUES (" + values + ")";
}

std::string UpdateTask() {
  std::string sql = "UPDATE VeloAutoTasks SET Version = ?";
  for (const TaskColumn& column : TaskColumns()) sql.append(", ").append(column.name).append(" = ?");
  return sql + " WHERE Id = ? AND Version = ?";
}

constexpr std::string_view kInsertAction =
    "INSERT INTO VeloAutoTaskActions (TaskId, Position, RecordModes, Capabilities, Kind, Name, Settings) "
    "VALUES (?, ?, ?, ?, ?, ?, ?)";

}  // namespace

// The open file and the statements on its tables.
class SqliteStorage::Tables {
 public:
  Tables(const std::string& path, std::chrono::milliseconds patience)
      : connection_(OpenTaskFile(path, patience)) {}

  [[nodiscard]] Connection& File() noexcept { return *connection_; }

  [[nodiscard]] std::vector<TaskRecord> ReadAll() {
    std::vector<TaskRecord> tasks;
    all_tasks_.ForEachRow([&](const Statement& row) { tasks.push_back(ReadTask(row)); });
    ReadInto(tasks, all_schedules_, &Tables::ReadSchedule);
    ReadInto(tasks, all_actions_, &Tables::ReadAction);
    return tasks;
  }

  [[nodiscard]] std::optional<TaskRecord> ReadOne(std::int64_t id) {
    std::optional<TaskRecord> task;
    for (Statement* statement : {&one_task_, &its_schedule_, &its_actions_}) {
      statement->BindInteger(0, id);
    }
    one_task_.ForEachRow([&](const Statement& row) { task = ReadTask(row); });
    if (!task) return task;
    ReadInto({&*task, 1}, its_schedule_, &Tables::ReadSchedule);
    ReadInto({&*task, 1}, its_actions_, &Tables::ReadAction);
    return task;
  }

  // Gives back the new task's id.
  [[nodiscard]] std::int64_t Insert(const TaskRecord& task) {
    insert_task_.BindInteger(0, task.version);
    BindColumns(insert_task_, TaskColumns(), task);
    insert_task_.Run();
    return connection_->LastInsertId();
  }

  // False when the task is gone or its stored version is not `former_version`.
  [[nodiscard]] bool Update(const TaskRecord& task, std::int64_t former_version) {
    update_task_.BindInteger(0, task.version);
    const int next = BindColumns(update_task_, TaskColumns(), task);
    update_task_.BindInteger(next, task.id);
    update_task_.BindInteger(next + 1, former_version);
    update_task_.Run();
    return connection_->ChangedRows() == 1;
  }

  void ReplaceSchedule(const TaskRecord& task) {
    delete_schedule_.BindInteger(0, task.id);
    delete_schedule_.Run();
    if (!task.recurrence) return;
    insert_schedule_.BindInteger(0, task.id);
    BindColumns(insert_schedule_, ScheduleColumns(), task);
    insert_schedule_.Run();
  }

  void ReplaceActions(const TaskRecord& task) {
    delete_actions_.BindInteger(0, task.id);
    delete_actions_.Run();
    int position = 0;
    for (const ActionRecord& action : task.actions) {
      insert_action_.BindInteger(0, task.id);
      insert_action_.BindInteger(1, ++position);
      insert_action_.BindInteger(2, action.record_modes);
      insert_action_.BindInteger(3, action.capabilities);
      insert_action_.BindText(4, action.kind);
      insert_action_.BindText(5, action.name);
      insert_action_.BindText(6, EncodeSettings(action.settings));
      insert_action_.Run();
    }
  }

  void Delete(std::int64_t id) {
    delete_task_.BindInteger(0, id);
    delete_task_.Run();
  }

 private:
  // Binds the columns' values behind the first parameter; gives back the number of the next one.
  static int BindColumns(Statement& statement, std::span<const TaskColumn> columns, const TaskRecord& task) {
    int parameter = 1;
    for (const TaskColumn& column : columns) column.bind(statement, parameter++, task);
    return parameter;
  }

  // Gives each row of a statement to the task that its first column names. Rows and tasks come in the order
  // of the tasks' ids.
  void ReadInto(std::span<TaskRecord> tasks, Statement& statement,
                void (Tables::*read)(TaskRecord& task, const Statement& row) const) const {
    auto task = tasks.begin();
    statement.ForEachRow([&](const Statement& row) {
      const std::int64_t id = row.Integer(0);
      while (task != tasks.end() && task->id < id) ++task;
      if (task != tasks.end() && task->id == id) (this->*read)(*task, row);
    });
  }

  void ReadColumns(TaskRecord& task, std::span<const TaskColumn> columns, const Statement& row,
                   int index) const {
    for (const TaskColumn& column : columns) {
      if (!column.read(task, row, index++)) RefuseColumn(task.id, column.name);
    }
  }

  [[nodiscard]] TaskRecord ReadTask(const Statement& row) const {
    TaskRecord task;
    task.id = row.Integer(0);
    task.version = row.Integer(1);
    ReadColumns(task, TaskColumns(), row, 2);
    return task;
  }

  void ReadSchedule(TaskRecord& task, const Statement& row) const {
    task.recurrence.emplace();
    ReadColumns(task, ScheduleColumns(), row, 1);
  }

  void ReadAction(TaskRecord& task, const Statement& row) const {
    ActionRecord action{.kind = std::string(row.Text(3)),
                        .name = std::string(row.Text(4)),
                        .settings = DecodeSettings(row.Text(5))};
    if (!ReadInteger(action.record_modes, row, 1) || !ReadInteger(action.capabilities, row, 2)) {
      RefuseColumn(task.id, "action");
    }
    task.actions.push_back(std::move(action));
  }

  [[noreturn]] void RefuseColumn(std::int64_t task, std::string_view what) const {
    connection_->Refuse(failure_number::kInvalidFormat,
                        "task " + std::to_string(task) + " holds an unreadable " + std::string(what));
  }

  [[nodiscard]] Statement Prepare(std::string_view sql) const { return connection_->Prepare(sql); }

  std::unique_ptr<Connection> connection_;
  // After the connection, so that they go before it.
  Statement all_tasks_ = Prepare(SelectTasks("ORDER BY Id"));
  Statement all_schedules_ = Prepare(SelectSchedules("ORDER BY TaskId"));
  Statement all_actions_ = Prepare(SelectActions("ORDER BY TaskId, Position"));
  Statement one_task_ = Prepare(SelectTasks("WHERE Id = ?"));
  Statement its_schedule_ = Prepare(SelectSchedules("WHERE TaskId = ?"));
  Statement its_actions_ = Prepare(SelectActions("WHERE TaskId = ? ORDER BY Position"));
  Statement insert_task_ = Prepare(InsertInto("VeloAutoTasks", "Version", TaskColumns()));
  Statement update_task_ = Prepare(UpdateTask());
  Statement delete_task_ = Prepare("DELETE FROM VeloAutoTasks WHERE Id = ?");
  Statement insert_schedule_ = Prepare(InsertInto("VeloAutoTaskSchedules", "TaskId", ScheduleColumns()));
  Statement delete_schedule_ = Prepare("DELETE FROM VeloAutoTaskSchedules WHERE TaskId = ?");
  Statement insert_action_ = Prepare(kInsertAction);
  Statement delete_actions_ = Prepare("DELETE FROM VeloAutoTaskActions WHERE TaskId = ?");
};

SqliteStorage::SqliteStorage(const std::string& path, std::chrono::milliseconds patience)
    : tables_(std::make_unique<Tables>(path, patience)) {}

SqliteStorage::~SqliteStorage() = default;

std::vector<TaskRecord> SqliteStorage::List() {
  std::vector<TaskRecord> tasks;
  tables_->File().Read([&] { tasks = tables_->ReadAll(); });
  return tasks;
}

std::optional<TaskRecord> SqliteStorage::Load(std::int64_t id) {
  std::optional<TaskRecord> task;
  tables_->File().Read([&] { task = tables_->ReadOne(id); });
  return task;
}

TaskRecord SqliteStorage::Save(const TaskRecord& task, DateTime now) {
  CheckTexts(task);
  TaskRecord saved = task;
  saved.modified = now;
  ++saved.version;
  if (!saved.recurrence) saved.schedule_start.reset();  // there is nothing to count from it
  const auto body = [&] {
    if (task.id == 0) {
      saved.id = tables_->Insert(saved);
    } else if (!tables_->Update(saved, task.version)) {
      throw TaskConflict(failure_number::kInvalidCall, "The task was changed or deleted since it was opened");
    }
    tables_->ReplaceSchedule(saved);
    tables_->ReplaceActions(saved);
  };
  tables_->File().Write(body, [&] { return Load(saved.id) == saved; });
  return saved;
}

void SqliteStorage::Delete(std::int64_t id) {
  tables_->File().Write([&] { tables_->Delete(id); }, [&] { return !Load(id).has_value(); });
}

std::unique_ptr<RowCursor> SqliteStorage::OpenRows(const std::string& sql) const {
  const Connection& file = tables_->File();
  return std::make_unique<SqlRows>(file.Path(), file.Patience(), kTaskFile, sql);
}

}  // namespace plovix
