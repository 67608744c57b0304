/// @file
/// The user who works with the stand-alone host: what follows from their record for the host and the wizard.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "data_source.h"
#include "host_state.h"
#include "host_tables.h"

namespace plovix {

/// The account under which the automation manager runs tasks. A user of this id works unattended.
inline constexpr std::string_view kAutomationAccount = "automation";

/// Makes the user the one who works with the host: their id, their rights and what they may do with data.
void SetUser(HostState& state, const UserRecord& user);
/// The entries of a wizard's store that follow from what the user may create.
[[nodiscard]] std::map<std::string, Value> EntriesFor(const UserRecord& user);

/// Whether the user may do with a data object, or in general with nullptr, what the key (a permission_key)
/// says. An administrator may everything. Others may not use data objects whose name begins with an
/// underscore, nor views of these; any other they may view and run tasks on, edit tasks on when they may
/// create tasks, and delete tasks on when they may create shared ones.
[[nodiscard]] bool MayUse(const UserRecord& user, std::string_view key, const DataObjectRecord* object);

/// Whether queries of the user at work may read what has a hidden name.
[[nodiscard]] bool MayReadHidden(const HostState& state);

/// Reads the texts of all tags: in the language of the code, else in the first one that has a text.
void ReadTags(HostState& state, HostTables& tables, const std::string& code);

}  // namespace plovix
