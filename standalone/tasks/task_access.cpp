#include "task_access.h"

#include <plovix/host/auto_task.h>
#include <plovix/host/host_application.h>

#include <algorithm>
#include <array>

#include "action_kinds.h"

namespace plovix {
namespace {

bool Grants(const PermissionRecord& line, TaskRight right) {
  switch (right) {
    case TaskRight::kView:
      return line.view;
    case TaskRight::kRun:
      return line.run;
    case TaskRight::kEdit:
      return line.edit;
    case TaskRight::kDelete:
      return line.erase;
  }
  return false;
}

bool Names(const PermissionRecord& line, const UserRecord& user) {
  return line.is_group ? user.groups.contains(line.subject) : line.subject == user.id;
}

std::optional<std::string_view> RefusalOfOwner(const UserRecord& user, const std::string& owner) {
  if (user.administrator) return std::nullopt;
  if (!owner.empty() && owner != user.id) return "rights.mayNotGiveAway";
  if (owner.empty() && !MayCreateShared(user)) return "rights.mayNotCreateShared";
  if (!owner.empty() && !MayCreatePersonal(user)) return "rights.mayNotCreatePersonal";
  return std::nullopt;
}

// Why the user may not put the task in that place, whatever it does.
std::optional<std::string_view> RefusalOfPlace(const UserRecord& user, const TaskRecord* stored,
                                               const TaskRecord& wanted) {
  if (stored == nullptr) return RefusalOfOwner(user, wanted.owner);
  if (!May(user, *stored, TaskRight::kEdit)) return "rights.mayNotEdit";
  const bool same_owner = stored->owner == wanted.owner;
  if (same_owner && stored->permissions == wanted.permissions) return std::nullopt;
  if (!MayChangeAccess(user, *stored)) return "rights.mayNotChangeAccess";
  return same_owner ? std::nullopt : RefusalOfOwner(user, wanted.owner);
}

}  // namespace

bool May(const UserRecord& user, const TaskRecord& task, TaskRight right) {
  if (user.administrator) return true;
  if (!task.owner.empty()) return task.owner == user.id;
  if (!task.permissions) {
    return right == TaskRight::kView || right == TaskRight::kRun || user.create_shared;
  }
  return std::ranges::any_of(*task.permissions, [&](const PermissionRecord& line) {
    return Names(line, user) && Grants(line, right);
  });
}

bool MayChangeAccess(const UserRecord& user, const TaskRecord& task) {
  constexpr std::array kAll{TaskRight::kView, TaskRight::kRun, TaskRight::kEdit, TaskRight::kDelete};
  return std::ranges::all_of(kAll, [&](TaskRight right) { return May(user, task, right); });
}

bool MayCreateShared(const UserRecord& user) {
  return user.administrator || user.create_shared;
}

bool MayCreatePersonal(const UserRecord& user) {
  return user.administrator || user.create_personal;
}

bool NeedsProgramRight(const TaskRecord& task) {
  return std::ranges::any_of(task.actions, [](const ActionRecord& action) {
    const ActionKind* kind = FindActionKind(action.kind);
    return kind == nullptr || kind->runs_code;
  });
}

bool MayRunPrograms(const UserRecord& user) {
  return user.administrator || user.run_programs;
}

std::optional<std::string_view> RefusalOf(const UserRecord& user, const TaskRecord* stored,
                                          const TaskRecord* wanted) {
  if (stored != nullptr && wanted == nullptr && !May(user, *stored, TaskRight::kDelete))
    return "rights.mayNotDelete";
  if (wanted == nullptr) return std::nullopt;
  if (const auto refusal = RefusalOfPlace(user, stored, *wanted)) return refusal;
  if (NeedsProgramRight(*wanted) && !MayRunPrograms(user)) return "rights.mayNotRunPrograms";
  return std::nullopt;
}

void TakeFromManager(TaskRecord& task) {
  task.allow_automation_manager = false;
  task.processing_mode = processing_mode::kEveryTime;
  task.recurrence.reset();
  DropUnusedStart(task);
}

bool HasRight(const UserRecord& user, int number) {
  if (user.administrator) return true;
  switch (number) {
    case kRightEditCategories:
      return user.edit_categories;
    case kRightSeeAllCategories:
      return user.see_all_categories;
    case kRightGoOnWithLanguageTags:
      return user.go_on_with_tags;
    default:
      return false;
  }
}

}  // namespace plovix
