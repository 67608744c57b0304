#include "claim_refusal.h"

#include <plovix/standalone/tasks/task_access.h>

#include <algorithm>

namespace plovix {
namespace {

const UserRecord* UserIn(const std::vector<UserRecord>& users, std::string_view id) {
  const auto found = std::ranges::find(users, id, &UserRecord::id);
  return found == users.end() ? nullptr : &*found;
}

std::string Named(const std::string& id) {
  return "\"" + id + "\"";
}

std::optional<std::string> RefusalOfSaver(const TaskRecord& task, const std::vector<UserRecord>& users) {
  if (task.saved_by.empty()) return std::nullopt;
  const UserRecord* saver = UserIn(users, task.saved_by);
  const auto words = [&](const char* lack) {
    return Named(task.saved_by) + " saved the task, and " + lack +
           "; somebody who may has to look at it and save it again";
  };
  if (saver == nullptr) return words("is no longer a user");
  if (!May(*saver, task, TaskRight::kRun)) return words("may no longer run it");
  if (NeedsProgramRight(task) && !MayRunPrograms(*saver)) return words("may no longer run programs or SQL");
  return std::nullopt;
}

std::optional<std::string> RefusalOfPerson(const TaskRecord& task, const RunRecord& run,
                                           const std::vector<UserRecord>& users) {
  if (run.person.empty()) return std::nullopt;
  const UserRecord* person = UserIn(users, run.person);
  const auto words = [&](const char* lack) {
    return Named(run.person) + " asked for this run, and " + lack + "; somebody who may has to ask for it";
  };
  if (person == nullptr) return words("is no longer a user");
  if (!May(*person, task, TaskRight::kRun)) return words("may not run the task any more");
  return std::nullopt;
}

std::optional<std::string> RefusalOfAccount(const TaskRecord& task, const RunRecord& run,
                                            const std::vector<UserRecord>& users) {
  const bool by_schedule = run.origin == RunOrigin::kSchedule || run.origin == RunOrigin::kCatchUp;
  const UserRecord* account = UserIn(users, kAutomationAccount);
  if (!by_schedule || account == nullptr || !task.owner.empty()) return std::nullopt;
  if (May(*account, task, TaskRight::kRun)) return std::nullopt;
  return "the account \"" + std::string(kAutomationAccount) +
         "\" may not run the task; somebody who may change its permissions has to give it that right";
}

}  // namespace

std::optional<std::string> ClaimRefusal(const TaskRecord& task, const RunRecord& run,
                                        const std::vector<UserRecord>& users) {
  if (!task.owner.empty() && UserIn(users, task.owner) == nullptr) {
    return "the task belongs to " + Named(task.owner) +
           ", who is no longer a user; an administrator has to give it to somebody else";
  }
  if (auto refusal = RefusalOfSaver(task, users)) return refusal;
  if (auto refusal = RefusalOfPerson(task, run, users)) return refusal;
  return RefusalOfAccount(task, run, users);
}

}  // namespace plovix
