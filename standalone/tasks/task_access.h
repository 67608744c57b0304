/// @file
/// What a user may do with a stored task, and the rights that pages ask for by number. Used by the task list,
/// the wizard's host and the editors of users and permissions.
#pragma once

#include <optional>
#include <string_view>

#include "task_record.h"
#include "user_record.h"

namespace plovix {

/// What can be done with a stored task.
enum class TaskRight {
  kView,   ///< see it in the list and open it
  kRun,    ///< start it
  kEdit,   ///< save it
  kDelete  ///< delete it
};

/// An administrator may do everything, a personal task's owner everything with it and nobody else anything.
/// A shared task without a permission set may be viewed and run by everybody, edited and deleted by those who
/// may create shared tasks; with one, a user may do what their own line and those of their groups grant.
[[nodiscard]] bool May(const UserRecord& user, const TaskRecord& task, TaskRight right);

/// Who may change a stored task's permission set, and whether it is personal: whoever may do everything with
/// it.
[[nodiscard]] bool MayChangeAccess(const UserRecord& user, const TaskRecord& task);
/// @{
/// Whether the user may create tasks of that kind.
[[nodiscard]] bool MayCreateShared(const UserRecord& user);
[[nodiscard]] bool MayCreatePersonal(const UserRecord& user);
/// @}

/// Why the user may not put `wanted` (nullptr: delete it) in the place of `stored` (nullptr: a new task), as
/// the key of a host text; nothing when they may. Both are the whole task. Only an administrator makes a task
/// somebody else's.
[[nodiscard]] std::optional<std::string_view> RefusalOf(const UserRecord& user, const TaskRecord* stored,
                                                        const TaskRecord* wanted);

/// A number that stands for no right of the table belongs to administrators alone.
[[nodiscard]] bool HasRight(const UserRecord& user, int number);

}  // namespace plovix
