// Who may put which task in the place of which other one: both storages ask the users and the task as they are at
// that moment.
#include <plovix/standalone/model/host_user.h>

#include "storage_support.h"

namespace plovix::test {
namespace {

using Change = std::function<void(TaskRecord& task)>;

const std::vector<UserRecord> kUsers{
    {.id = "root", .name = "", .administrator = true, .groups = {}},
    {.id = "anna", .name = "", .groups = {}, .create_personal = true, .create_shared = true},
    {.id = "clerk", .name = "", .groups = {}, .create_shared = true},
    {.id = "solo", .name = "", .groups = {}, .create_personal = true},
    {.id = "guest", .name = "", .groups = {"Guests"}}};

TaskRecord Personal(const std::string& owner) {
  TaskRecord task;
  task.owner = owner;
  return task;
}

TaskRecord Granted() {
  TaskRecord task;
  task.permissions = PermissionSet{
      {.subject = "Guests", .is_group = true, .view = true, .run = true, .edit = true},
      {.subject = "anna", .is_group = false, .view = true, .run = true, .edit = true, .erase = true}};
  return task;
}

void Rename(TaskRecord& task) {
  task.name = "renamed";
}
void Permit(TaskRecord& task) {
  task.permissions = PermissionSet{};
}
Change OwnedBy(const std::string& id) {
  return [id](TaskRecord& task) {
    task.owner = id;
    task.permissions.reset();
  };
}

// What the storage says to the change, or to the deletion where there is none; a refusal leaves everything.
std::string Answer(TaskStorage& storage, TaskRecord task, const Change& change) {
  const auto before = storage.List();
  try {
    if (change) change(task);
    change ? static_cast<void>(storage.Save(task, kNow)) : storage.Delete(task.id);
    EXPECT_NE(storage.List(), before);
    return "";
  } catch (const TaskConflict&) {
    return "conflict";
  } catch (const Failure& failure) {
    EXPECT_EQ(storage.List(), before);
    return failure.Description();
  }
}

TEST(Rights, AreAskedByTheStorageBeforeATaskChanges) {
  const struct Case {
    std::string actor;
    std::optional<TaskRecord> stored;  // nothing: a new task
    Change change;                     // empty: delete it
    std::string answer;
  } cases[] = {
      {"guest", Granted(), Rename, ""},
      {"guest", Granted(), Permit, "[rights.mayNotChangeAccess]"},
      {"guest", Granted(), OwnedBy("guest"), "[rights.mayNotChangeAccess]"},
      {"guest", Granted(), {}, "[rights.mayNotDelete]"},
      {"guest", TaskRecord(), Rename, "[rights.mayNotEdit]"},
      {"clerk", Granted(), Rename, "[rights.mayNotEdit]"},
      {"clerk", TaskRecord(), Permit, ""},
      {"clerk", TaskRecord(), OwnedBy("clerk"), "[rights.mayNotCreatePersonal]"},
      {"anna", Granted(), Permit, ""},
      {"anna", Granted(), OwnedBy("anna"), ""},
      {"anna", Granted(), OwnedBy("guest"), "[rights.mayNotGiveAway]"},
      {"anna", Granted(), {}, ""},
      {"anna", Personal("anna"), OwnedBy(""), ""},
      {"anna", Personal("solo"), Rename, "[rights.mayNotEdit]"},
      {"anna", Personal("solo"), {}, "[rights.mayNotDelete]"},
      {"solo", Personal("solo"), Rename, ""},
      {"solo", Personal("solo"), OwnedBy(""), "[rights.mayNotCreateShared]"},
      {"clerk", Personal("clerk"), Rename, ""},
      {"root", Personal("solo"), Rename, ""},
      {"root", Personal("solo"), OwnedBy("anna"), ""},
      {"gone", TaskRecord(), Rename, "[rights.noUser]"},
      {"solo", {}, OwnedBy("solo"), ""},
      {"solo", {}, Rename, "[rights.mayNotCreateShared]"},
      {"clerk", {}, Rename, ""},
      {"clerk", {}, OwnedBy("clerk"), "[rights.mayNotCreatePersonal]"},
      {"anna", {}, OwnedBy("root"), "[rights.mayNotGiveAway]"},
      {"root", {}, OwnedBy("solo"), ""},
  };
  for (const Case& each : cases) {
    const TempFolder folder;
    MemoryStorage memory;
    SqliteStorage file(folder / "tasks.sqlite");
    SqliteHostTables tables(folder / "tasks.sqlite");
    tables.SaveUsers(kUsers);
    for (TaskStorage* storage : std::initializer_list<TaskStorage*>{&memory, &file}) {
      const TaskRecord opened = each.stored ? storage->Save(*each.stored, kNow) : TaskRecord();
      storage->SetGuard(GuardFor(tables, each.actor, TextTable::Ids()));
      EXPECT_EQ(Answer(*storage, opened, each.change), each.answer)
          << each.actor << " case " << &each - cases << (storage == &file ? " in a file" : " in memory");
    }
  }
}

// Not as they were when the task was opened.
TEST(Rights, AreThoseOfTheMomentOfTheChange) {
  const std::pair<std::string, std::string> meanwhile[] = {
      {"", ""},
      {"UPDATE VeloUsers SET CreateShared = 0", "[rights.mayNotEdit]"},
      {"DELETE FROM VeloUsers WHERE Id = 'clerk'", "[rights.noUser]"},
      {"UPDATE VeloAutoTasks SET Permissions = '[]'", "[rights.mayNotEdit]"},
      {"UPDATE VeloAutoTasks SET Owner = 'anna'", "[rights.mayNotEdit]"},
      {"UPDATE VeloAutoTasks SET Owner = 'anna', Version = 2", "conflict"},
      {"DELETE FROM VeloAutoTasks", "conflict"}};
  for (const auto& [sql, answer] : meanwhile) {
    const TempFolder folder;
    const std::string path = folder / "tasks.sqlite";
    SqliteStorage storage(path);
    SqliteHostTables tables(path);
    tables.SaveUsers(kUsers);
    storage.SetGuard(GuardFor(tables, "clerk", TextTable::Ids()));
    const TaskRecord opened = storage.Save(TaskRecord(), kNow);
    if (!sql.empty()) RunSql(path, sql);
    EXPECT_EQ(Answer(storage, opened, Rename), answer) << sql;
  }
}

}  // namespace
}  // namespace plovix::test
