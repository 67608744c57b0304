#include "task_access.h"

#include <plovix/host/host_application.h>

#include <algorithm>

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
