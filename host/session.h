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

/// A task's permission set; pages only pass it on.
class Permissions : public HostObject {};

/// The host's editor of permission sets; opened through the session.
class PermissionEditor : public HostObject {};

/// The keys of Session::HasPermission.
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
  /// The session's own account. It equals the current user's id if no person works in the session, as in that
  /// of the automation manager.
  [[nodiscard]] virtual std::string AccountId() = 0;
  /// Whether the session has the permission `key` (one of permission_key) for the data object; in general if
  /// `object` is null.
  [[nodiscard]] virtual bool HasPermission(std::string_view key, const Ref<DataObject>& object) = 0;
  /// Opens `editor` on `permissions` (may be null) and returns the edited set, or `permissions` itself if the
  /// user cancelled. `user`: whose own permissions are edited; null: those of everybody. Modal.
  [[nodiscard]] virtual Ref<Permissions> EditPermissions(const Ref<PermissionEditor>& editor,
                                                         const Ref<Permissions>& permissions,
                                                         const Ref<SessionUser>& user,
                                                         const std::string& title) = 0;
};

}  // namespace plovix
