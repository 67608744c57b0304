#include "sqlite_storage.h"

#include <QStandardPaths>
#include <filesystem>
#include <utility>

#include "connection.h"
#include "schema.h"
#include "settings_column.h"
#include "task_columns.h"

namespace plovix {
namespace {

namespace fs = std::filesystem;

std::string SelectTasks(std::string_view rest) {
  std::string sql = "SELECT Id, Version";
  for (const TaskColumn& column : TaskColumns()) {
    sql += ", " + (column.IsText() ? TextColumn(column.name) : std::string(column.name));
  }
  return sql + " FROM VeloAutoTasks " + std::string(rest);
}

std::string SelectActions(std::string_view rest) {
  return "SELECT TaskId, RecordModes, Capabilities, " + TextColumn("Kind") + ", " + TextColumn("Name") +
         ", " + TextColumn("Settings") + " FROM VeloAutoTaskActions " + std::string(rest);
}

std::string InsertTask() {
  std::string names = "Version", values = "?";
  for (const TaskColumn& column : TaskColumns()) {
    names += ", " + std::string(column.name);
    values += ", " + std::string(column.IsText() ? kTextParameter : "?");
  }
  return "INSERT INTO VeloAutoTasks (" + names + ") VALUES (" + values + ")";
}

std::string UpdateTask() {
  std::string sql = "UPDATE VeloAutoTasks SET Version = ?";
  for (const TaskColumn& column : TaskColumns()) {
    sql += ", " + std::string(column.name) + " = " + std::string(column.IsText() ? kTextParameter : "?");
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

// The open file and the statements on its two tables.
class SqliteStorage::Tables {
 public:
  Tables(const std::string& path, std::chrono::milliseconds patience)
      : connection_(Looked(path, patience), patience, Access::kReadWrite) {
    Migrate(connection_, MigrationSteps());
    connection_.PrepareForWriting();
    all_tasks_ = connection_.Prepare(SelectTasks("ORDER BY Id"));
    all_actions_ = connection_.Prepare(SelectActions("ORDER BY TaskId, Position"));
    one_task_ = connection_.Prepare(SelectTasks("WHERE Id = ?"));
    its_actions_ = connection_.Prepare(SelectActions("WHERE TaskId = ? ORDER BY Position"));
    insert_task_ = connection_.Prepare(InsertTask());
    update_task_ = connection_.Prepare(UpdateTask());
    delete_task_ = connection_.Prepare("DELETE FROM VeloAutoTasks WHERE Id = ?");
    insert_action_ = connection_.Prepare(InsertAction());
    delete_actions_ = connection_.Prepare("DELETE FROM VeloAutoTaskActions WHERE TaskId = ?");
  }

  [[nodiscard]] Connection& File() noexcept { return connection_; }

  [[nodiscard]] std::vector<TaskRecord> ReadAll() {
    std::vector<TaskRecord> tasks;
    connection_.ForEachRow(all_tasks_, [&](const QSqlQuery& row) { tasks.push_back(ReadTask(row)); });
    auto task = tasks.begin();
    connection_.ForEachRow(all_actions_, [&](const QSqlQuery& row) {
      const std::int64_t id = row.value(0).toLongLong();
      while (task != tasks.end() && task->id < id) ++task;
      if (task != tasks.end() && task->id == id) task->actions.push_back(ReadAction(row));
    });
    return tasks;
  }

  [[nodiscard]] std::optional<TaskRecord> ReadOne(std::int64_t id) {
    std::optional<TaskRecord> task;
    one_task_.bindValue(0, Integer(id));
    connection_.ForEachRow(one_task_, [&](const QSqlQuery& row) { task = ReadTask(row); });
    if (!task) return task;
    its_actions_.bindValue(0, Integer(id));
    connection_.ForEachRow(its_actions_,
                           [&](const QSqlQuery& row) { task->actions.push_back(ReadAction(row)); });
    return task;
  }

  // Gives back the new task's id.
  [[nodiscard]] std::int64_t Insert(const TaskRecord& task) {
    BindTask(insert_task_, task);
    connection_.Run(insert_task_);
    return insert_task_.lastInsertId().toLongLong();
  }

  // False when the task is gone or its stored version is not `former_version`.
  [[nodiscard]] bool Update(const TaskRecord& task, std::int64_t former_version) {
    const int next = BindTask(update_task_, task);
    update_task_.bindValue(next, Integer(task.id));
    update_task_.bindValue(next + 1, Integer(former_version));
    connection_.Run(update_task_);
    return update_task_.numRowsAffected() == 1;
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
  // Binds the version and the task's fields; gives back the number of the next parameter.
  static int BindTask(QSqlQuery& statement, const TaskRecord& task) {
    int parameter = 0;
    statement.bindValue(parameter++, Integer(task.version));
    for (const TaskColumn& column : TaskColumns())
      statement.bindValue(parameter++, ColumnValue(task, column));
    return parameter;
  }

  [[nodiscard]] TaskRecord ReadTask(const QSqlQuery& row) const {
    TaskRecord task;
    task.id = row.value(0).toLongLong();
    task.version = row.value(1).toLongLong();
    int index = 2;
    for (const TaskColumn& column : TaskColumns()) {
      if (!ReadColumn(task, column, row.value(index++))) RefuseColumn(task.id, column.name);
    }
    return task;
  }

  [[nodiscard]] ActionRecord ReadAction(const QSqlQuery& row) const {
    ActionRecord action{.kind = TextOf(row.value(3)),
                        .name = TextOf(row.value(4)),
                        .settings = DecodeSettings(TextOf(row.value(5)))};
    if (!ReadInteger(action.record_modes, row.value(1)) || !ReadInteger(action.capabilities, row.value(2))) {
      RefuseColumn(row.value(0).toLongLong(), "action");
    }
    return action;
  }

  [[noreturn]] void RefuseColumn(std::int64_t task, std::string_view what) const {
    connection_.Refuse(failure_number::kInvalidFormat,
                       "task " + std::to_string(task) + " holds an unreadable " + std::string(what));
  }

  Connection connection_;
  // After the connection, so that they go before it.
  QSqlQuery all_tasks_, all_actions_, one_task_, its_actions_;
  QSqlQuery insert_task_, update_task_, delete_task_, insert_action_, delete_actions_;
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
  const auto body = [&] {
    if (task.id == 0) {
      saved.id = tables_->Insert(saved);
    } else if (!tables_->Update(saved, task.version)) {
      throw TaskConflict(failure_number::kInvalidCall, "The task was changed or deleted since it was opened");
    }
    tables_->ReplaceActions(saved);
  };
  tables_->File().Write(body, [&] { return Load(saved.id) == saved; });
  return saved;
}

void SqliteStorage::Delete(std::int64_t id) {
  tables_->File().Write([&] { tables_->Delete(id); }, [&] { return !Load(id).has_value(); });
}

}  // namespace plovix
