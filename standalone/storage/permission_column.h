// The text of a task's Permissions column. Used by the storage.
#pragma once

#include <plovix/standalone/tasks/permission_record.h>

#include <optional>
#include <string>
#include <string_view>

namespace plovix {

// A JSON array of {"subject": text, "group": bool, "view", "run", "edit", "delete": bool}.
[[nodiscard]] std::string EncodePermissions(const PermissionSet& permissions);
// Nothing for any other text, because guessing would grant or revoke rights.
[[nodiscard]] std::optional<PermissionSet> DecodePermissions(std::string_view column);

}  // namespace plovix
