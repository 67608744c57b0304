#include "sqlite_storage.h"

#include <plovix/standalone/sqlite/sql_rows.h>
#include <plovix/standalone/tasks/text_limits.h>

#include <map>
#include <span>
#include <utility>

#include "task_columns.h"

namespace plovix {
namespace {

std::string SelectTasks(std::string_view rest) {
  return SelectColumns("Id, Version", TaskColumns(), "VeloAutoTasks " + std::string(rest));
}

std::string SelectSchedules(std::string_view rest) {
  return SelectColumns("TaskId", ScheduleColumns(), "VeloAutoTaskSchedules " + std::string(rest));
}

std::string SelectActions(std::string_view rest) {
  return SelectColumns("TaskId", ActionColumns(), "VeloAutoTaskActions " + std::string(rest));
}

// The number of a deleted task is not used again.
constexpr std::string_view kHighestIdIsGiven =
    "SELECT 1 FROM sqlite_sequence WHERE seq = 9223372036854775807 "
    "UNION ALL SELECT 1 FROM VeloAutoTasks WHERE Id = 9223372036854775807";

// Tasks in the order of their ids, and the values that could not be read, by task.
struct TasksRead {
  std::vector<TaskRecord> tasks;
  std::map<std::int64_t, std::string> unreadable;
  void Note(std::int64_t task, std::string_view column) {
    if (!column.empty()) unreadable.emplace(task, column);
  }
};

}  // namespace

// The open file and the statements on its tables.
class SqliteStorage::Tables {
 public:
  Tables(const std::string& path, std::chrono::milliseconds patience)
      : connection_(OpenTaskFile(path, patience)) {}

  [[nodiscard]] Connection& File() noexcept { return *connection_; }

  [[nodiscard]] TasksRead ReadAll() {
    TasksRead read;
    all_tasks_.ForEachRow([&](const Statement& row) { ReadTask(read, row); });
    ReadInto(read, all_schedules_, ReadSchedule);
    ReadInto(read, all_actions_, ReadAction);
    return read;
  }

  [[nodiscard]] std::optional<TaskRecord> ReadOne(std::int64_t id) {
    TasksRead read;
    for (Statement* statement : {&one_task_, &its_schedule_, &its_actions_}) {
      statement->BindInteger(0, id);
    }
    one_task_.ForEachRow([&](const Statement& row) { ReadTask(read, row); });
    ReadInto(read, its_schedule_, ReadSchedule);
    ReadInto(read, its_actions_, ReadAction);
    RefuseUnreadable(read);
    if (read.tasks.empty()) return std::nullopt;
    return std::move(read.tasks.front());
  }

  void RefuseUnreadable(const TasksRead& read) const {
    if (read.unreadable.empty()) return;
    const auto& [task, column] = *read.unreadable.begin();
    connection_->Refuse(failure_number::kInvalidFormat,
                        "task " + std::to_string(task) + " holds an unreadable " + column);
  }

  [[nodiscard]] std::optional<std::int64_t> Version(std::int64_t id) {
    Statement version = Prepare("SELECT Version FROM VeloAutoTasks WHERE Id = ?");
    version.BindInteger(0, id);
    return version.Step() ? std::optional(version.Integer(0)) : std::nullopt;
  }

  // Returns the new task's id.
  [[nodiscard]] std::int64_t Insert(const TaskRecord& task) {
    if (Prepare(kHighestIdIsGiven).Step()) {
      connection_->Refuse(failure_number::kOverflow,
                          "no task can be added: the highest number that a task can have was given already; "
                          "move the tasks into a new file by exporting and importing them");
    }
    insert_task_.BindInteger(0, task.version);
    BindColumns(insert_task_, 1, TaskColumns(), task);
    insert_task_.Run();
    return connection_->LastInsertId();
  }

  // False if the task is gone or its stored version is not `former_version`.
  [[nodiscard]] bool Update(const TaskRecord& task, std::int64_t former_version) {
    update_task_.BindInteger(0, task.version);
    const int next = BindColumns(update_task_, 1, TaskColumns(), task);
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
    BindColumns(insert_schedule_, 1, ScheduleColumns(), task);
    insert_schedule_.Run();
  }

  void ReplaceActions(const TaskRecord& task) {
    delete_actions_.BindInteger(0, task.id);
    delete_actions_.Run();
    int position = 0;
    for (const ActionRecord& action : task.actions) {
      insert_action_.BindInteger(0, task.id);
      insert_action_.BindInteger(1, ++position);
      BindColumns(insert_action_, 2, ActionColumns(), action);
      insert_action_.Run();
    }
  }

  [[nodiscard]] bool IsHeld(std::int64_t id) {
    Statement held = Prepare("SELECT 1 FROM VeloAutoTasks WHERE Id = ? AND Held <> 0");
    held.BindInteger(0, id);
    return held.Step();
  }

  // False if that version is gone, or not held.
  [[nodiscard]] bool Release(std::int64_t id, std::int64_t version) {
    Statement release = Prepare(kEndHold);
    release.BindInteger(0, id);
    release.BindInteger(1, version);
    release.Run();
    return connection_->ChangedRows() == 1;
  }

  void TurnOffClearing(std::int64_t id) {
    Statement update = Prepare(kTurnOffClearing);
    update.BindInteger(0, id);
    update.Run();
  }

  void Delete(std::int64_t id) {
    delete_task_.BindInteger(0, id);
    delete_task_.Run();
  }

 private:
  // Reads each row of a statement into the task whose id is in the first column. Rows and tasks are in the
  // order of the tasks' ids.
  static void ReadInto(TasksRead& read, Statement& statement,
                       std::string_view (*read_row)(TaskRecord& task, const Statement& row)) {
    auto task = read.tasks.begin();
    statement.ForEachRow([&](const Statement& row) {
      const std::int64_t id = row.Integer(0);
      while (task != read.tasks.end() && task->id < id) ++task;
      if (task != read.tasks.end() && task->id == id) read.Note(id, read_row(*task, row));
    });
  }

  // Id 0 means a task that is not stored.
  static void ReadTask(TasksRead& read, const Statement& row) {
    TaskRecord& task = read.tasks.emplace_back();
    task.id = row.Integer(0);
    if (task.id == 0) read.Note(task.id, "Id");
    if (!ReadInteger(task.version, row, 1)) read.Note(task.id, "Version");
    read.Note(task.id, ReadColumns(task, TaskColumns(), row, 2));
  }

  // These return the name of the first unreadable value, or an empty name.
  static std::string_view ReadSchedule(TaskRecord& task, const Statement& row) {
    task.recurrence.emplace();
    return ReadColumns(task, ScheduleColumns(), row, 1);
  }

  static std::string_view ReadAction(TaskRecord& task, const Statement& row) {
    return ReadColumns(task.actions.emplace_back(), ActionColumns(), row, 1).empty() ? "" : "action";
  }

  [[nodiscard]] Statement Prepare(std::string_view sql) const { return connection_->Prepare(sql); }

  std::unique_ptr<Connection> connection_;
  // After the connection, so that they are destroyed before it.
  Statement all_tasks_ = Prepare(SelectTasks("ORDER BY Id"));
  Statement all_schedules_ = Prepare(SelectSchedules("ORDER BY TaskId"));
  Statement all_actions_ = Prepare(SelectActions("ORDER BY TaskId, Position"));
  Statement one_task_ = Prepare(SelectTasks("WHERE Id = ?"));
  Statement its_schedule_ = Prepare(SelectSchedules("WHERE TaskId = ?"));
  Statement its_actions_ = Prepare(SelectActions("WHERE TaskId = ? ORDER BY Position"));
  Statement insert_task_ = Prepare(InsertColumns("INSERT INTO VeloAutoTasks", "Version", "?", TaskColumns()));
  Statement update_task_ =
      Prepare(UpdateColumns("VeloAutoTasks", "Version = ?", TaskColumns(), "Id = ? AND Version = ?"));
  Statement delete_task_ = Prepare("DELETE FROM VeloAutoTasks WHERE Id = ?");
  Statement insert_schedule_ =
      Prepare(InsertColumns("INSERT INTO VeloAutoTaskSchedules", "TaskId", "?", ScheduleColumns()));
  Statement delete_schedule_ = Prepare("DELETE FROM VeloAutoTaskSchedules WHERE TaskId = ?");
  Statement insert_action_ =
      Prepare(InsertColumns("INSERT INTO VeloAutoTaskActions", "TaskId, Position", "?, ?", ActionColumns()));
  Statement delete_actions_ = Prepare("DELETE FROM VeloAutoTaskActions WHERE TaskId = ?");
};

SqliteStorage::SqliteStorage(const std::string& path, std::chrono::milliseconds patience)
    : tables_(std::make_unique<Tables>(path, patience)) {}

SqliteStorage::~SqliteStorage() = default;

std::vector<TaskRecord> SqliteStorage::List() {
  TasksRead read;
  tables_->File().Read([&] { read = tables_->ReadAll(); });
  tables_->RefuseUnreadable(read);
  return std::move(read.tasks);
}

std::vector<TaskRecord> SqliteStorage::ListReadable(const std::function<void(const UnreadableTask&)>& tell) {
  TasksRead read;
  tables_->File().Read([&] { read = tables_->ReadAll(); });
  std::vector<TaskRecord> tasks;
  tasks.reserve(read.tasks.size());
  for (TaskRecord& task : read.tasks) {
    const auto found = read.unreadable.find(task.id);
    if (found == read.unreadable.end()) {
      tasks.push_back(std::move(task));
    } else {
      tell({std::move(task), found->second});
    }
  }
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
  saved.saved_by = Person();
  saved.version = NextVersion(task.version);
  DropUnusedStart(saved);
  const auto body = [&] {
    AskAbout(task.id, &task);
    saved.held = task.id == 0 ? task.held : tables_->IsHeld(task.id);
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

void SqliteStorage::Delete(std::int64_t id, std::int64_t version) {
  const auto body = [&] {
    if (tables_->Version(id).value_or(version) != version) {
      throw TaskConflict(failure_number::kInvalidCall, "The task was changed since it was read");
    }
    AskAbout(id, nullptr);
    tables_->Delete(id);
  };
  tables_->File().Write(body, [&] { return !tables_->Version(id); });
}

void SqliteStorage::TurnOffClearing(std::int64_t id) {
  tables_->File().Write([&] { tables_->TurnOffClearing(id); },
                        [&] {
                          const auto task = Load(id);
                          return !task || (!task->process_all_records && !task->process_failed_records);
                        });
}

bool SqliteStorage::Release(std::int64_t id, std::int64_t version) {
  bool released = false;
  tables_->File().Write([&] { released = tables_->Release(id, version); },
                        [&] { return !released || !tables_->IsHeld(id); });
  return released;
}

void SqliteStorage::AskAbout(std::int64_t id, const TaskRecord* wanted) {
  if (!IsGuarded()) return;
  const auto stored = tables_->ReadOne(id);
  AskGuard(stored ? &*stored : nullptr, wanted);
}

bool SqliteStorage::EmptyLog() {
  return tables_->File().EmptyLog();
}

void SqliteStorage::OnWritten(std::function<void()> told) {
  tables_->File().OnWritten(std::move(told));
}

std::unique_ptr<RowCursor> SqliteStorage::OpenRows(const std::string& sql) const {
  const Connection& file = tables_->File();
  return std::make_unique<SqlRows>(file.Path(), file.Patience(), kTaskFile, sql);
}

}  // namespace plovix
