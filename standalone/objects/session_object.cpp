#include "session_object.h"

#include <plovix/base/failure.h>

#include "data_objects.h"
#include "host_state.h"

namespace plovix {
namespace {

class UserObject final : public SessionUser {
 public:
  explicit UserObject(std::string id) : id_(std::move(id)) {}
  [[nodiscard]] std::string UserId() override { return Gated("User.UserId", id_); }

 private:
  std::string id_;
};

// The host has only one kind of cursor, so the arguments after the query have no effect.
class ConnectionObject final : public StateObject<DatabaseConnection> {
 public:
  using StateObject::StateObject;
  [[nodiscard]] Ref<Recordset> OpenRecordset(const std::string& query, std::int32_t /*type*/,
                                             std::int32_t /*options*/, std::optional<std::int32_t> /*lock*/,
                                             std::int32_t /*flags*/) override {
    Called("Connection.OpenRecordset");
    return std::make_shared<RecordsetObject>(state_.open_rows ? state_.open_rows(query) : nullptr);
  }
};

}  // namespace

Ref<SessionUser> SessionObject::CurrentUser() {
  Called("Session.CurrentUser");
  return std::make_shared<UserObject>(state_.user_id);
}

std::string SessionObject::AccountId() {
  return Gated("Session.AccountId", state_.session_id);
}

bool SessionObject::HasPermission(std::string_view key, const Ref<DataObject>& object) {
  Called("Session.HasPermission");
  const auto* own = dynamic_cast<const HostDataObject*>(object.Get());
  return !state_.has_permission || state_.has_permission(key, own != nullptr ? &own->Record() : nullptr);
}

Ref<Permissions> SessionObject::EditPermissions(const Ref<PermissionEditor>& /*editor*/,
                                                const Ref<Permissions>& permissions,
                                                const Ref<SessionUser>& /*user*/, const std::string& title) {
  Called("Session.EditPermissions");
  const auto* own = dynamic_cast<const PermissionsObject*>(permissions.Get());
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

// Called once for each row, mostly for the same column.
Ref<Field> RecordsetObject::Fields(const std::string& name) {
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

}  // namespace plovix
