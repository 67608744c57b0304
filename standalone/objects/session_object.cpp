#include "session_object.h"

#include <plovix/base/failure.h>

#include "call_gate.h"
#include "data_objects.h"
#include "host_state.h"

namespace plovix {
namespace {

class UserObject final : public SessionUser {
 public:
  explicit UserObject(std::string id) : id_(std::move(id)) {}
  [[nodiscard]] std::string UserId() override {
    Called("User.UserId");
    return id_;
  }

 private:
  std::string id_;
};

// The host has only one kind of cursor, so the arguments after the query have no effect.
class ConnectionObject final : public DatabaseConnection {
 public:
  explicit ConnectionObject(HostState& state) : state_(state) {}
  [[nodiscard]] std::shared_ptr<Recordset> OpenRecordset(const std::string& query, std::int32_t /*type*/,
                                                         std::int32_t /*options*/,
                                                         std::optional<std::int32_t> /*lock*/,
                                                         std::int32_t /*flags*/) override {
    Called("Connection.OpenRecordset");
    return std::make_shared<RecordsetObject>(state_.open_rows ? state_.open_rows(query) : nullptr);
  }

 private:
  HostState& state_;
};

}  // namespace

std::shared_ptr<SessionUser> SessionObject::CurrentUser() {
  Called("Session.CurrentUser");
  return std::make_shared<UserObject>(state_.user_id);
}

std::string SessionObject::AccountId() {
  Called("Session.AccountId");
  return state_.session_id;
}

bool SessionObject::HasPermission(std::string_view key, const std::shared_ptr<DataObject>& object) {
  Called("Session.HasPermission");
  const auto* own = dynamic_cast<const HostDataObject*>(object.get());
  return !state_.has_permission || state_.has_permission(key, own != nullptr ? &own->Record() : nullptr);
}

std::shared_ptr<Permissions> SessionObject::EditPermissions(
    const std::shared_ptr<PermissionEditor>& /*editor*/, const std::shared_ptr<Permissions>& permissions,
    const std::shared_ptr<SessionUser>& /*user*/, const std::string& title) {
  Called("Session.EditPermissions");
  const auto* own = dynamic_cast<const PermissionsObject*>(permissions.get());
  auto edited =
      state_.dialogs->EditPermissions(own != nullptr ? std::optional(own->set) : std::nullopt, title);
  return edited && !state_.permissions_locked ? std::make_shared<PermissionsObject>(std::move(*edited))
                                              : permissions;
}

class RecordsetObject::Column final : public Field {
 public:
  Column(std::shared_ptr<Pass> pass, std::string name, std::size_t index)
      : pass_(std::move(pass)), name_(std::move(name)), index_(index) {}
  [[nodiscard]] const std::string& Name() const noexcept { return name_; }
  [[nodiscard]] plovix::Value Value() override {
    Called("Field.Value");
    if (pass_->at_end) throw Failure(failure_number::kNoCurrentRow, "There is no current row");
    return std::string(pass_->rows->Text(index_));
  }

 private:
  std::shared_ptr<Pass> pass_;
  std::string name_;
  std::size_t index_;
};

RecordsetObject::RecordsetObject(std::unique_ptr<RowCursor> rows) {
  pass_->rows = std::move(rows);
  Advance();
  empty_ = pass_->at_end;
}

bool RecordsetObject::Bof() {
  Called("Recordset.BOF");
  return empty_;
}

bool RecordsetObject::Eof() {
  Called("Recordset.EOF");
  return pass_->at_end;
}

// Called once for each row, mostly for the same column.
std::shared_ptr<Field> RecordsetObject::Fields(const std::string& name) {
  Called("Recordset.Fields");
  if (column_ && column_->Name() == name) return column_;
  for (std::size_t i = 0; pass_->rows && i < pass_->rows->Columns(); ++i) {
    if (pass_->rows->Name(i) == name) return column_ = std::make_shared<Column>(pass_, name, i);
  }
  throw Failure(failure_number::kNoSuchColumn, "The query has no column " + name);
}

void RecordsetObject::MoveNext() {
  Called("Recordset.MoveNext");
  if (pass_->at_end) throw Failure(failure_number::kNoCurrentRow, "There is no current row");
  Advance();
}

// At the end until the next row has been read, so a row that cannot be read ends the pass.
void RecordsetObject::Advance() {
  pass_->at_end = true;
  pass_->at_end = !pass_->rows || !pass_->rows->Next();
}

DatabaseObject::DatabaseObject(HostState& state) : connection_(std::make_shared<ConnectionObject>(state)) {}

std::shared_ptr<DatabaseConnection> DatabaseObject::Connection() {
  Called("Database.Connection");
  return connection_;
}

}  // namespace plovix
