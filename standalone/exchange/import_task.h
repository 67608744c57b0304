// Adapts a task from another installation. Used by the program's import.
#pragma once

#include <plovix/standalone/tasks/data_source.h>

#include "task_export.h"

namespace plovix {

// The importing installation.
struct ImportTarget {
  DataSource* data_source = nullptr;  // not owned; nullptr: data objects are not looked up
  std::vector<UserRecord> users;      // empty: users are unknown here, permissions are kept
  std::vector<TagRecord> tags;
  std::string user_id;             // the importing user
  bool automation_manager = true;  // whether tasks may be given to it
};

// Something that could not be imported unchanged: a host text and its parameters.
struct ImportNote {
  std::string_view text;
  std::vector<std::string> parameters;
  bool operator==(const ImportNote&) const = default;
};
using ImportReport = std::vector<ImportNote>;

struct ImportedTask {
  TaskRecord task;                  // to be edited, then stored as a new one
  std::vector<TagRecord> new_tags;  // tags of the task that do not exist here yet
  ImportReport report;
};

// Kept and reported: actions of kinds that this program does not know, a data object that the source lacks or
// that cannot be looked up, tags that exist here with other texts (the texts here stay). Removed and
// reported: permissions of users and groups that do not exist here, a schedule if tasks may not have one. A
// personal task becomes the importing user's own if they may have one, and a shared task stays shared if they
// may create one; a difference from the file or a change of owner is reported.
[[nodiscard]] ImportedTask ForImport(const TaskExport& file, const ImportTarget& target);

}  // namespace plovix
