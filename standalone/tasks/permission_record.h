/// @file
/// Who may do what with a task, as plain values: the contents of a task's permission set, which its editor
/// edits.
#pragma once

#include <plovix/base/requirements.h>

#include <string>
#include <vector>

namespace plovix {

/// One line of a permission set.
struct PermissionRecord {
  std::string subject;    ///< the id of a user, or the name of a group
  bool is_group = false;  ///< which of the two
  /// @{
  /// What the line grants.
  bool view = false, run = false, edit = false, erase = false;
  /// @}
  bool operator==(const PermissionRecord&) const = default;
};

/// Each subject occurs once. Users have what their own line and those of their groups grant together; nobody
/// else except administrators has any permission.
using PermissionSet = std::vector<PermissionRecord>;

}  // namespace plovix
