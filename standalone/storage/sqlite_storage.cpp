#include "sqlite_storage.h"

#include <QStandardPaths>
#include <filesystem>
#include <span>
#include <utility>

#include "connection.h"
#include "schema.h"
#include "settings_column.h"
#include "task_columns.h"

namespace plovix {
namespace {

namespace fs = std::filesystem;

std::string Select(std::string columns, std::span<const TaskColumn> more, std::string_view rest) {
  for (const TaskColumn& column : more) {
    columns += ", " + (column.is_text ? TextColumn(column.name) : std::string(column.name));
  }
  return "SELECT " + columns + " FROM " + std::string(rest);
}

std::string SelectTasks(std::string_view rest) {
  return Select("Id, Version", TaskColumns(), "VeloAutoTasks " + std::string(rest));
}

std::string SelectSchedules(std::string_view rest) {
  return Select("TaskId", ScheduleColumns(), "VeloAutoTaskSchedules " + std::string(rest));
}

std::string SelectActions(std::string_view rest) {
  return "SELECT TaskId, RecordModes, Capabilities, " + TextColumn("Kind") + ", " + TextColumn("Name") +
         ", " + TextColumn("Settings") + " FROM VeloAutoTaskActions " + std::string(rest);
}

std::string_view Parameter(const TaskColumn& column) {
  return column.is_text ? kTextParameter : "?";
}

std::string InsertInto(std::string_view table, std::string_view first, std::span<const TaskColumn> more) {
  std::string names(first), values = "?";
  for (const TaskColumn& column : more) {
    names += ", " + std::string(column.name);
    values += ", " + std::string(Parameter(column));
  }
  return "INSERT INTO " + std::string(table) + " (" + names + ") VALUES (" + values + ")";
}

std::string UpdateTask() {
  std::string sql = "UPDATE VeloAutoTasks SET Version = ?";
  for (const TaskColumn& column : TaskColumns()) {
    sql += ", " + std::string(column.name) + " = " + std::string(Parameter(column));
  }
  return sql + " WHERE Id = ? AND Version = ?";
}

std::string InsertAction() {
  const std::string text(kTextParameter);
  return "INSERT INTO VeloAutoTaskActions (TaskId, Position, RecordModes, Capabilities, Kind, Name, "
         "Settings) "
         "VALUES (?, ?, ?, ?, " +
         text + ", " + text + ", " + text + ")";
}

qlonglong Integer(std::int64_t value) {
  return value;
}

// A log that was left behind may hold a newer version or another program's tables. Opened for writing
// and closed again, SQLite would move it into the file; so it is looked at first without that right.
void LookBeforeOpening(const std::string& path, std::chrono::milliseconds patience) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(path, error);
  if (error || !fs::exists(real, error) || !fs::exists(fs::path(real) += kLogSuffix, error)) return;
  Connection connection(path, patience, Access::kReadOnly);
  (void)SchemaVersion(connection, static_cast<int>(MigrationSteps().size()));
}

std::string Looked(const std::string& path, std::chrono::milliseconds patience) {
  if (path == DefaultDatabasePath()) {
    std::error_code error;  // a folder that is missing afterwards is told by the connection
    fs::create_directories(fs::path(path).parent_path(), error);
  }
  LookBeforeOpening(path, patience);
  return path;
}

}  // namespace

std::string DefaultDatabasePath() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return (folder + QStringLiteral("/plovix/tasks.sqlite")).toStdString();
}

// The open file and the statements on its tables.
class SqliteStorage::Tables {
 public:
  Tables(const std::string& path, std::chrono::milliseconds patience)
      : connection_(Looked(path, patience), patience, Access::kReadWrite) {
    Migrate(connection_, MigrationSteps());
    connection_.PrepareForWriting();
    all_tasks_ = connection_.Prepare(SelectTasks("ORDER BY Id"));
    all_schedules_ = connection_.Prepare(SelectSchedules("ORDER BY TaskId"));
    all_actions_ = connection_.Prepare(SelectActions("ORDER BY TaskId, Position"));
    one_task_ = connection_.Prepare(SelectTasks("WHERE Id = ?"));
    its_schedule_ = connection_.Prepare(SelectSchedules("WHERE TaskId = ?"));
    its_actions_ = connection_.Prepare(SelectActions("WHERE TaskId = ? ORDER BY Position"));
    insert_task_ = connection_.Prepare(InsertInto("VeloAutoTasks", "Version", TaskColumns()));
    update_task_ = connection_.Prepare(UpdateTask());
    delete_task_ = connection_.Prepare("DELETE FROM VeloAutoTasks WHERE Id = ?");
    insert_schedule_ = connection_.Prepare(InsertInto("VeloAutoTaskSchedules", "TaskId", ScheduleColumns()));
    delete_schedule_ = connection_.Prepare("DELETE FROM VeloAutoTaskSchedules WHERE TaskId = ?");
    insert_action_ = connection_.Prepare(InsertAction());
    delete_actions_ = connection_.Prepare("DELETE FROM VeloAutoTaskActions WHERE TaskId = ?");
  }

  [[nodiscard]] Connection& File() noexcept { return connection_; }

  [[nodiscard]] std::vector<TaskRecord> ReadAll() {
    std::vector<TaskRecord> tasks;
    connection_.ForEachRow(all_tasks_, [&](const QSqlQuery& row) { tasks.push_back(ReadTask(row)); });
    ReadInto(tasks, all_schedules_, &Tables::ReadSchedule);
    ReadInto(tasks, all_actions_, &Tables::ReadAction);
    return tasks;
  }

  [[nodiscard]] std::optional<TaskRecord> ReadOne(std::int64_t id) {
    std::optional<TaskRecord> task;
    for (QSqlQuery* statement : {&one_task_, &its_schedule_, &its_actions_}) {
      statement->bindValue(0, Integer(id));
    }
    connection_.ForEachRow(one_task_, [&](const QSqlQuery& row) { task = ReadTask(row); });
    if (!task) return task;
    ReadInto({&*task, 1}, its_schedule_, &Tables::ReadSchedule);
    ReadInto({&*task, 1}, its_actions_, &Tables::ReadAction);
    return task;
  }

  // Gives back the new task's id.
  [[nodiscard]] std::int64_t Insert(const TaskRecord& task) {
    insert_task_.bindValue(0, Integer(task.version));
    BindColumns(insert_task_, TaskColumns(), task);
    connection_.Run(insert_task_);
    return insert_task_.lastInsertId().toLongLong();
  }

  // False when the task is gone or its stored version is not `former_version`.
  [[nodiscard]] bool Update(const TaskRecord& task, std::int64_t former_version) {
    update_task_.bindValue(0, Integer(task.version));
    const int next = BindColumns(update_task_, TaskColumns(), task);
    update_task_.bindValue(next, Integer(task.id));
    update_task_.bindValue(next + 1, Integer(former_version));
    connection_.Run(update_task_);
    return update_task_.numRowsAffected() == 1;
  }

  void ReplaceSchedule(const TaskRecord& task) {
    delete_schedule_.bindValue(0, Integer(task.id));
    connection_.Run(delete_schedule_);
    if (!task.recurrence) return;
    insert_schedule_.bindValue(0, Integer(task.id));
    BindColumns(insert_schedule_, ScheduleColumns(), task);
    connection_.Run(insert_schedule_);
  }

  void ReplaceActions(const TaskRecord& task) {
    delete_actions_.bindValue(0, Integer(task.id));
    connection_.Run(delete_actions_);
    int position = 0;
    for (const ActionRecord& action : task.actions) {
      insert_action_.bindValue(0, Integer(task.id));
      insert_action_.bindValue(1, ++position);
      insert_action_.bindValue(2, action.record_modes);
      insert_action_.bindValue(3, action.capabilities);
      insert_action_.bindValue(4, TextValue(action.kind));
      insert_action_.bindValue(5, TextValue(action.name));
      insert_action_.bindValue(6, TextValue(EncodeSettings(action.settings)));
      connection_.Run(insert_action_);
    }
  }

  void Delete(std::int64_t id) {
    delete_task_.bindValue(0, Integer(id));
    connection_.Run(delete_task_);
  }

 private:
  // Binds the columns' values behind the first parameter; gives back the number of the next one.
  static int BindColumns(QSqlQuery& statement, std::span<const TaskColumn> columns, const TaskRecord& task) {
    int parameter = 1;
    for (const TaskColumn& column : columns) statement.bindValue(parameter++, column.value(task));
    return parameter;
  }

  // Gives each row of a statement to the task that its first column names. Rows and tasks come in the order
  // of the tasks' ids.
  void ReadInto(std::span<TaskRecord> tasks, QSqlQuery& statement,
                void (Tables::*read)(TaskRecord& task, const QSqlQuery& row) const) const {
    auto task = tasks.begin();
    connection_.ForEachRow(statement, [&](const QSqlQuery& row) {
      const std::int64_t id = row.value(0).toLongLong();
      while (task != tasks.end() && task->id < id) ++task;
      if (task != tasks.end() && task->id == id) (this->*read)(*task, row);
    });
  }

  void ReadColumns(TaskRecord& task, std::span<const TaskColumn> columns, const QSqlQuery& row,
                   int index) const {
    for (const TaskColumn& column : columns) {
      if (!column.read(task, row.value(index++))) RefuseColumn(task.id, column.name);
    }
  }

  [[nodiscard]] TaskRecord ReadTask(const QSqlQuery& row) const {
    TaskRecord task;
    task.id = row.value(0).toLongLong();
    task.version = row.value(1).toLongLong();
    ReadColumns(task, TaskColumns(), row, 2);
    return task;
  }

  void ReadSchedule(TaskRecord& task, const QSqlQuery& row) const {
    task.recurrence.emplace();
    ReadColumns(task, ScheduleColumns(), row, 1);
  }

  void ReadAction(TaskRecord& task, const QSqlQuery& row) const {
    ActionRecord action{.kind = TextOf(row.value(3)),
                        .name = TextOf(row.value(4)),
                        .settings = DecodeSettings(TextOf(row.value(5)))};
    if (!ReadInteger(action.record_modes, row.value(1)) || !ReadInteger(action.capabilities, row.value(2))) {
      RefuseColumn(task.id, "action");
    }
    task.actions.push_back(std::move(action));
  }

  [[noreturn]] void RefuseColumn(std::int64_t task, std::string_view what) const {
    connection_.Refuse(failure_number::kInvalidFormat,
                       "task " + std::to_string(task) + " holds an unreadable " + std::string(what));
  }

  Connection connection_;
  // After the connection, so that they go before it.
  QSqlQuery all_tasks_, all_schedules_, all_actions_, one_task_, its_schedule_, its_actions_;
  QSqlQuery insert_task_, update_task_, delete_task_;
  QSqlQuery insert_schedule_, delete_schedule_, insert_action_, delete_actions_;
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

}  // namespace plovix
