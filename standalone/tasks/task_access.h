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

/// An administrator may do everything. A personal task's owner may do everything with it, and nobody else
/// anything. Everybody may view and run a shared task without a permission set; those who may create shared
/// tasks may edit and delete it. With a permission set, users may do what their own line and those of their
/// groups grant.
[[nodiscard]] bool May(const UserRecord& user, const TaskRecord& task, TaskRight right);

/// Whether the user may change a stored task's permission set and whether it is personal: this requires all
/// rights for the task.
[[nodiscard]] bool MayChangeAccess(const UserRecord& user, const TaskRecord& task);
/// @{
/// Whether the user may create tasks of that kind.
[[nodiscard]] bool MayCreateShared(const UserRecord& user);
[[nodiscard]] bool MayCreatePersonal(const UserRecord& user);
/// @}

/// Whether saving or running the task needs the right to run programs: one of its actions runs a program or
/// SQL, or is of a kind that this program does not know, which may do so in another version.
[[nodiscard]] bool NeedsProgramRight(const TaskRecord& task);
/// Whether the user has that right; administrators always have it.
[[nodiscard]] bool MayRunPrograms(const UserRecord& user);

/// Why the user may not replace `stored` (nullptr: a new task) by `wanted` (nullptr: delete it), as the key
/// of a host text; nothing if they may. Both are complete tasks. Only an administrator may make a task
/// somebody else's.
[[nodiscard]] std::optional<std::string_view> RefusalOf(const UserRecord& user, const TaskRecord* stored,
                                                        const TaskRecord* wanted);

/// Takes a task away from the automation manager: without a schedule, each run processes all records.
void TakeFromManager(TaskRecord& task);

/// Whether the user has the right with that number; only administrators have a right with an unknown number.
[[nodiscard]] bool HasRight(const UserRecord& user, int number);

}  // namespace plovix
