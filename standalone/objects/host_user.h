/// @file
/// The user who works with the stand-alone host: what their record means for the host and the wizard.
#pragma once

#include <plovix/standalone/tasks/data_source.h>
#include <plovix/standalone/tasks/task_storage.h>
#include <plovix/standalone/tasks/users_and_tags.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "host_state.h"

namespace plovix {

/// The user with that id as stored now; nothing if there is none.
[[nodiscard]] std::optional<UserRecord> UserOf(UsersAndTags& tables, const std::string& id);
/// The user with that id, or without an id the first administrator. Fails with a message that lists the
/// existing ids.
[[nodiscard]] UserRecord FindUser(UsersAndTags& tables, const std::optional<std::string>& id,
                                  const TextTable& texts);

/// Makes this the user who works with the host: their id, their rights and what they may do with data. The
/// rights behind a task's flags are read from `tables`, which outlives the host, each time.
void SetUser(HostState& state, UsersAndTags& tables, const UserRecord& user);
/// Reads the user's record again and gives the host their rights; its ids stay. False if the user no longer
/// exists: the record then has only the id.
[[nodiscard]] bool RefreshUser(HostState& state, UsersAndTags& tables, UserRecord& user);

/// Prepares the host for the user's wizard on the task, and returns the entries of the wizard's store that
/// depend on what the user may do. When an administrator edits somebody else's personal task, the pages see
/// its owner as the user, so that it stays the owner's. Permissions and "personal" are locked for users who
/// may not change them.
[[nodiscard]] std::map<std::string, Value> StartEditing(HostState& state, const UserRecord& user,
                                                        const TaskRecord& task);
/// To be called when that wizard has ended.
void StopEditing(HostState& state, const UserRecord& user);

/// A guard that refuses, with a message, what the user with that id in `tables` may not do at that moment.
/// Both references outlive the guard.
[[nodiscard]] TaskGuard GuardFor(UsersAndTags& tables, std::string user_id, const TextTable& texts);

/// Whether the user has the permission `key` (a permission_key) for a data object, or in general for nullptr.
/// An administrator may do everything. Others may not use data objects whose names begin with an underscore,
/// or views of these. They may view all others and run tasks on them; edit tasks on them if they may create
/// tasks, and delete tasks on them if they may create shared ones.
[[nodiscard]] bool MayUse(const UserRecord& user, std::string_view key, const DataObjectRecord* object);

/// Whether queries of the current user may read tables and views with hidden names.
[[nodiscard]] bool MayReadHidden(const HostState& state);

/// Reads the texts of all tags: in the language of the code, or else in the first language with a text.
void ReadTags(HostState& state, UsersAndTags& tables, const std::string& code);

}  // namespace plovix
