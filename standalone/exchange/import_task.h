/// @file
/// What becomes of a task that comes from another installation.
#pragma once

#include <plovix/standalone/tasks/data_source.h>

#include "task_export.h"

namespace plovix {

/// The installation that takes a task over.
struct ImportTarget {
  DataSource* data_source = nullptr;  ///< not owned; nothing: data objects are not looked for
  std::vector<UserRecord> users;      ///< empty: users are not known here, permissions stay as they are
  std::vector<TagRecord> tags;        ///< that exist here
  std::string user_id;                ///< who imports
  bool automation_manager = true;     ///< whether tasks may be given to it
};

/// Something that could not be taken over as it was: a host text and its parameters.
struct ImportNote {
  std::string_view text;                ///< key of a host text
  std::vector<std::string> parameters;  ///< of that text
  bool operator==(const ImportNote&) const = default;
};
/// In the order in which they are to be told.
using ImportReport = std::vector<ImportNote>;

/// What an import would store.
struct ImportedTask {
  TaskRecord task;                  ///< to be edited, then stored as a new one
  std::vector<TagRecord> new_tags;  ///< that the task names and that do not exist here yet
  ImportReport report;              ///< empty: the task is taken over as it is
};

/// Kept as they are and told: actions of kinds that this program does not know, a data object that the source
/// lacks or cannot be asked for, tags that exist here with other texts (the texts here stay). Taken out and
/// told: permissions of those who do not exist here, a schedule where no task may have one. A personal
/// task becomes the importing user's own, as far as they may have one, and a shared one stays shared, as far
/// as they may make one; it is told where this differs from what the file says or the owner changes.
[[nodiscard]] ImportedTask ForImport(const TaskExport& file, const ImportTarget& target);

}  // namespace plovix
