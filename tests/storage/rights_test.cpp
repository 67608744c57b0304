// Who may put which task in the place of which other one: the storage asks the users and the row as they are
// when it writes, not as they were when the task was opened.
#include <plovix/standalone/objects/host_user.h>
#include <plovix/standalone/runs/claim_refusal.h>
#include <plovix/standalone/tasks/task_access.h>

#include "storage_support.h"

namespace plovix::test {
namespace {

const std::vector<UserRecord> kUsers{{.id = "root", .name = "", .administrator = true, .groups = {}},
                                     {.id = "anna",
                                      .name = "",
                                      .groups = {},
                                      .create_personal = true,
                                      .create_shared = true,
                                      .run_programs = true},
                                     {.id = "clerk", .name = "", .groups = {}, .create_shared = true},
                                     {.id = "solo", .name = "", .groups = {}, .create_personal = true},
                                     {.id = "guest", .name = "", .groups = {"Guests"}}};
const PermissionSet kGranted{
    {.subject = "Guests", .is_group = true, .view = true, .run = true, .edit = true},
    {.subject = "anna", .is_group = false, .view = true, .run = true, .edit = true, .erase = true}};

TEST(Rights, AreAskedWhereATaskIsStored) {
  const struct {
    std::string actor, task;  // "new", "shared", "granted", or its owner
    // "rename", "permit", "delete", "act KIND", or the new owner; "": shared
    std::string change;
    std::string answer;
    std::string meanwhile = {};  // SQL
  } cases[] = {
      {"guest", "granted", "rename", ""},
      {"guest", "granted", "permit", "[rights.mayNotChangeAccess]"},
      {"guest", "granted", "guest", "[rights.mayNotChangeAccess]"},
      {"guest", "granted", "delete", "[rights.mayNotDelete]"},
      {"guest", "shared", "rename", "[rights.mayNotEdit]"},
      {"clerk", "granted", "rename", "[rights.mayNotEdit]"},
      {"clerk", "shared", "permit", ""},
      {"clerk", "shared", "clerk", "[rights.mayNotCreatePersonal]"},
      {"anna", "granted", "permit", ""},
      {"anna", "granted", "anna", ""},
      {"anna", "granted", "guest", "[rights.mayNotGiveAway]"},
      {"anna", "granted", "delete", ""},
      {"anna", "anna", "", ""},
      {"anna", "solo", "rename", "[rights.mayNotEdit]"},
      {"solo", "solo", "", "[rights.mayNotCreateShared]"},
      {"clerk", "clerk", "rename", ""},
      {"root", "solo", "anna", ""},
      {"gone", "shared", "rename", "[rights.noUser]"},
      {"solo", "new", "solo", ""},
      {"solo", "new", "rename", "[rights.mayNotCreateShared]"},
      {"clerk", "shared", "act write-log", ""},
      {"clerk", "shared", "act run-program", "[rights.mayNotRunPrograms]"},
      {"clerk", "new", "act run-sql", "[rights.mayNotRunPrograms]"},
      {"clerk", "new", "act of-another-version", "[rights.mayNotRunPrograms]"},
      {"anna", "new", "act run-sql", ""},
      {"root", "new", "act of-another-version", ""},
      {"anna", "shared", "act run-sql", "[rights.mayNotRunPrograms]", "UPDATE VeloUsers SET RunPrograms = 0"},
      {"clerk", "shared", "rename", "[rights.mayNotEdit]", "UPDATE VeloUsers SET CreateShared = 0"},
      {"clerk", "shared", "delete", "[rights.noUser]", "DELETE FROM VeloUsers WHERE Id = 'clerk'"},
      {"clerk", "shared", "delete", "[rights.mayNotDelete]", "UPDATE VeloAutoTasks SET Permissions = '[]'"},
      {"clerk", "shared", "rename", "conflict", "UPDATE VeloAutoTasks SET Owner = 'anna', Version = 2"},
      {"clerk", "shared", "rename", "conflict", "DELETE FROM VeloAutoTasks"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(&each - cases);
    const auto [folder, path] = OwnTaskFile();
    SqliteStorage storage(path);
    SqliteUsersAndTags tables(path);
    tables.SaveUsers(kUsers, tables.Users());
    TaskRecord task;
    if (each.task == "granted") task.permissions = kGranted;
    if (each.task != "granted" && each.task != "shared" && each.task != "new") task.owner = each.task;
    if (each.task != "new") task = storage.Save(task, kNow);
    const TextTable texts = TextTable::Ids();
    storage.SetGuard(GuardFor(tables, each.actor, texts));
    if (!each.meanwhile.empty()) RunSql(path, each.meanwhile);
    const auto before = storage.List();
    if (each.change == "rename") {
      task.name = "renamed";
    } else if (each.change.starts_with("act ")) {
      task.actions = {{each.change.substr(4), "", 1, 1, {}}};
    } else if (each.change == "permit") {
      task.permissions = PermissionSet{};
    } else {
      task.owner = each.change, task.permissions.reset();
    }
    std::string answer;
    try {
      each.change == "delete" ? storage.Delete(task.id, task.version)
                              : static_cast<void>(storage.Save(task, kNow));
    } catch (const TaskConflict&) {
      answer = "conflict";
    } catch (const Failure& failure) {
      answer = failure.Description();
    }
    EXPECT_EQ(answer, each.answer);
    EXPECT_EQ(storage.List() != before, answer.empty());
  }
}

TEST(Rights, AreAskedWhereARunBegins) {
  const UserRecord root{.id = "root", .name = "", .administrator = true, .groups = {}},
      anna{.id = "anna", .name = "", .groups = {}, .create_shared = true, .run_programs = true},
      ben{.id = "ben", .name = "", .groups = {}}, automation{.id = "automation", .name = "", .groups = {}};
  const PermissionSet annas{{.subject = "anna", .view = true, .run = true}};
  const auto permit = [&](TaskRecord& task) { task.permissions = annas; };
  const auto own = [](TaskRecord& task) { task.owner = "anna"; };
  const struct {
    std::string words;  // of the refusal; empty: none
    std::vector<UserRecord> users;
    std::string saver;
    RunOrigin origin = RunOrigin::kSchedule;
    std::string person = {};
    std::function<void(TaskRecord&)> change = {};
  } cases[] = {
      {"", {anna}, "anna"},
      {"", {root}, ""},
      {"", {root}, "root", RunOrigin::kManual, "root"},
      {"\"anna\" saved the task, and is no longer a user", {root, ben}, "anna"},
      {"\"ben\" saved the task, and may no longer run programs", {anna, ben}, "ben"},
      {"",
       {ben},
       "ben",
       RunOrigin::kSchedule,
       {},
       [](auto& task) {
         task.actions = {{"write-log", "", 1, 1, {}}};
       }},
      {"may no longer run programs",
       {ben},
       "ben",
       {},
       {},
       [](auto& task) {
         task.actions = {{"new", "", 1, 1, {}}};
       }},
      {"\"ben\" saved the task, and may no longer run it", {anna, ben}, "ben", {}, {}, permit},
      {"\"ben\" asked for this run, and may not", {anna, ben}, "anna", RunOrigin::kManual, "ben", permit},
      {"\"gone\" asked for this run, and is no", {anna}, "anna", RunOrigin::kDryRun, "gone"},
      {"\"gone\" asked for this run, and is no", {anna}, "", RunOrigin::kCatchUp, "gone"},
      {"the account \"automation\" may not", {anna, automation}, "anna", {}, {}, permit},
      {"the account \"automation\" may not", {anna, automation}, "", RunOrigin::kCatchUp, {}, permit},
      {"", {anna, automation}, "anna", RunOrigin::kManual, "anna", permit},
      {"", {anna, automation}, "anna", {}, {}, own},
      {"", {anna, automation}, "anna"},
      {"belongs to \"anna\", who is no longer a user", {root}, "root", {}, {}, own},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(&each - cases);
    TaskRecord task;
    task.saved_by = each.saver;
    task.actions = {{"run-program", "", 1, 1, {}}};
    if (each.change) each.change(task);
    RunRecord run;
    run.origin = each.origin;
    run.person = each.person;
    const std::string refusal = ClaimRefusal(task, run, each.users).value_or("");
    EXPECT_EQ(refusal.empty(), each.words.empty()) << refusal;
    EXPECT_NE(refusal.find(each.words), std::string::npos) << refusal;
  }
}

TEST(Rights, OfAPermissionsLineAreEachItsOwn) {
  const std::pair<bool PermissionRecord::*, TaskRight> rights[] = {
      {&PermissionRecord::view, TaskRight::kView},
      {&PermissionRecord::run, TaskRight::kRun},
      {&PermissionRecord::edit, TaskRight::kEdit},
      {&PermissionRecord::erase, TaskRight::kDelete}};
  for (const auto& [flag, right] : rights) {
    TaskRecord task;
    task.permissions = PermissionSet{{.subject = "guest"}};
    task.permissions->front().*flag = true;
    for (const auto& [other, asked] : rights) EXPECT_EQ(May(kUsers.back(), task, asked), asked == right);
  }
}

}  // namespace
}  // namespace plovix::test
