/// @file
/// The user who works with the stand-alone host: what follows from their record for the host and the wizard.
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

/// The account under which the automation manager runs tasks. A user of this id works unattended.
inline constexpr std::string_view kAutomationAccount = "automation";

/// The user of that id as stored now; nothing when there is none.
[[nodiscard]] std::optional<UserRecord> UserOf(UsersAndTags& tables, const std::string& id);
/// The user of that id; without one the first administrator. Fails in words with the ids that there are.
[[nodiscard]] UserRecord FindUser(UsersAndTags& tables, const std::optional<std::string>& id,
                                  const TextTable& texts);

/// Makes the user the one who works with the host: their id, their rights and what they may do with data.
/// What a task's flags are made of is asked of `tables`, which outlives the host, each time anew.
void SetUser(HostState& state, UsersAndTags& tables, const UserRecord& user);
/// Reads the user's record anew and gives the host their rights; its ids stay. False when there is no such
/// user any more: the record then holds the id alone.
[[nodiscard]] bool RefreshUser(HostState& state, UsersAndTags& tables, UserRecord& user);

/// Prepares the host for the user's wizard on the task, and gives the entries of its store that follow from
/// what the user may do. The pages see whoever edits somebody else's personal task, which only an
/// administrator may, as its owner: so it stays theirs. Permissions and "personal" are locked for whoever may
/// not change them.
[[nodiscard]] std::map<std::string, Value> StartEditing(HostState& state, const UserRecord& user,
                                                        const TaskRecord& task);
/// To be called when that wizard has ended.
void StopEditing(HostState& state, const UserRecord& user);

/// Refuses in words what the user of the id, as `tables` holds them at that moment, may not do. Both
/// references outlive the guard.
[[nodiscard]] TaskGuard GuardFor(UsersAndTags& tables, std::string user_id, const TextTable& texts);

/// Whether the user may do with a data object, or in general with nullptr, what the key (a permission_key)
/// says. An administrator may everything. Others may not use data objects whose name begins with an
/// underscore, nor views of these; any other they may view and run tasks on, edit tasks on when they may
/// create tasks, and delete tasks on when they may create shared ones.
[[nodiscard]] bool MayUse(const UserRecord& user, std::string_view key, const DataObjectRecord* object);

/// Whether queries of the user at work may read what has a hidden name.
[[nodiscard]] bool MayReadHidden(const HostState& state);

/// Reads the texts of all tags: in the language of the code, else in the first one that has a text.
void ReadTags(HostState& state, UsersAndTags& tables, const std::string& code);

}  // namespace plovix
