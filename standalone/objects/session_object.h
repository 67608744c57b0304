/// @file
/// The stand-alone host's objects behind the session and the task database.
#pragma once

#include <plovix/host/database.h>
#include <plovix/host/session.h>
#include <plovix/standalone/tasks/permission_record.h>
#include <plovix/standalone/tasks/row_cursor.h>

#include <memory>
#include <string>
#include <utility>

#include "call_gate.h"
#include "state_object.h"

namespace plovix {

struct HostState;

/// An immutable permission set; editing creates another one.
class PermissionsObject final : public Permissions {
 public:
  /// Takes over the set.
  explicit PermissionsObject(PermissionSet initial) : set(std::move(initial)) {}
  const PermissionSet set;  ///< the host's own view, not gated
};

/// The session as HostState describes it.
class SessionObject final : public StateObject<Session> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] Ref<SessionUser> CurrentUser() override;
  [[nodiscard]] std::string AccountId() override;
  [[nodiscard]] bool HasPermission(std::string_view key, const Ref<DataObject>& object) override;
  [[nodiscard]] Ref<Permissions> EditPermissions(const Ref<PermissionEditor>& editor,
                                                 const Ref<Permissions>& permissions,
                                                 const Ref<SessionUser>& user,
                                                 const std::string& title) override;
};

/// A pass over a RowCursor.
class RecordsetObject final : public Recordset {
 public:
  /// Goes to the first row; nullptr means no rows.
  explicit RecordsetObject(std::unique_ptr<RowCursor> rows);
  [[nodiscard]] bool Bof() override { return Gated("Recordset.BOF", empty_); }
  [[nodiscard]] bool Eof() override { return Gated("Recordset.EOF", pass_->at_end); }
  [[nodiscard]] Ref<Field> Fields(const std::string& name) override;
  void MoveNext() override;

 private:
  class Column;
  // Shared with the fields, which may outlive the recordset.
  struct Pass {
    std::unique_ptr<RowCursor> rows;
    bool at_end = false;
  };
  void Advance();

  std::shared_ptr<Pass> pass_ = std::make_shared<Pass>();
  bool empty_ = false;
  std::shared_ptr<Column> column_;  // requested last
};

/// Opens the cursors of HostState::open_rows.
class DatabaseObject final : public Database {
 public:
  /// `state` outlives the object.
  explicit DatabaseObject(HostState& state);
  [[nodiscard]] Ref<DatabaseConnection> Connection() override {
    return Gated("Database.Connection", connection_);
  }

 private:
  Ref<DatabaseConnection> connection_;
};

}  // namespace plovix
