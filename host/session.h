/// @file
/// The host session: who is working, and what they may do. Used by the Details page.
#pragma once

#include <string>
#include <string_view>

#include "data_object.h"
#include "value.h"

namespace plovix {

/// Who is working.
class SessionUser {
 public:
  virtual ~SessionUser() = default;
  /// Never empty; becomes the owner of a personal task.
  [[nodiscard]] virtual std::string UserId() = 0;
};

/// A task's permission set; pages only hand it on.
class Permissions : public HostObject {};

/// The host's editor of permission sets; opened through the session.
class PermissionEditor : public HostObject {};

/// What Session::HasPermission is asked for.
namespace permission_key {
inline constexpr std::string_view kView = "view";      ///< whether the data object is offered
inline constexpr std::string_view kRun = "run";        ///< AutoTask::SetMayRun
inline constexpr std::string_view kEdit = "edit";      ///< AutoTask::SetMayEdit
inline constexpr std::string_view kDelete = "delete";  ///< AutoTask::SetMayDelete
}  // namespace permission_key

/// From HostApplication::Session.
class Session {
 public:
  virtual ~Session() = default;
  /// Never nothing.
  [[nodiscard]] virtual Ref<SessionUser> CurrentUser() = 0;
  /// The session's own account. It is the current user's id where nobody sits in front of the session, as
  /// where the automation manager runs.
  [[nodiscard]] virtual std::string AccountId() = 0;
  /// Whether the session may do with the data object what `key` (one of permission_key) says; in general
  /// when `object` is nothing.
  [[nodiscard]] virtual bool HasPermission(std::string_view key, const Ref<DataObject>& object) = 0;
  /// Opens `editor` on `permissions` (may be nothing) and gives back the set as edited; `permissions` itself
  /// when the user cancelled. `user`: whose own permissions are edited; nothing: those of everybody. Modal.
  [[nodiscard]] virtual Ref<Permissions> EditPermissions(const Ref<PermissionEditor>& editor,
                                                         const Ref<Permissions>& permissions,
                                                         const Ref<SessionUser>& user,
                                                         const std::string& title) = 0;
};

}  // namespace plovix
