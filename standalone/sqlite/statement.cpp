#include "statement.h"

#include <sqlite3.h>

#include <new>
#include <utility>

#include "connection.h"

namespace plovix {
namespace {

// Resets a statement on leaving its scope.
class Resetting {
 public:
  explicit Resetting(Statement& statement) : statement_(statement) {}
  ~Resetting() { statement_.Reset(); }
  Resetting(const Resetting&) = delete;
  Resetting& operator=(const Resetting&) = delete;

 private:
  Statement& statement_;
};

}  // namespace

void Statement::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
  sqlite3_finalize(statement);
}

Statement::Statement(const Connection& connection, Handle handle)
    : connection_(&connection),
      handle_(std::move(handle)),
      may_run_(connection.access_ == Access::kReadWrite || IsReadOnly()) {}

void Statement::Check(int code) const {
  if (code != SQLITE_OK) connection_->Fail();
}

void Statement::BindInteger(int parameter, std::int64_t value) {
  Check(sqlite3_bind_int64(handle_.get(), parameter + 1, value));
}

void Statement::BindReal(int parameter, double value) {
  Check(sqlite3_bind_double(handle_.get(), parameter + 1, value));
}

void Statement::BindText(int parameter, std::string_view value) {
  const char* bytes = value.empty() ? "" : value.data();  // a null pointer would mean NULL
  Check(
      sqlite3_bind_text64(handle_.get(), parameter + 1, bytes, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::BindBlob(int parameter, std::string_view bytes) {
  const char* first = bytes.empty() ? "" : bytes.data();  // a null pointer would mean NULL
  Check(sqlite3_bind_blob64(handle_.get(), parameter + 1, first, bytes.size(), SQLITE_TRANSIENT));
}

void Statement::BindNull(int parameter) {
  Check(sqlite3_bind_null(handle_.get(), parameter + 1));
}

bool Statement::Step() {
  if (!may_run_) connection_->RefuseToWrite();
  const int code = sqlite3_step(handle_.get());
  if (code == SQLITE_ROW) return true;
  const Resetting resetting(*this);
  connection_->CheckUnchanged();
  if (code != SQLITE_DONE) connection_->Fail();
  return false;
}

void Statement::Reset() noexcept {
  sqlite3_reset(handle_.get());  // returns the last step's failure again
}

void Statement::Run() {
  const Resetting resetting(*this);
  while (Step()) continue;
}

void Statement::ForEachRow(const std::function<void(const Statement&)>& row) {
  const Resetting resetting(*this);
  while (Step()) row(*this);
}

int Statement::Columns() const noexcept {
  return sqlite3_column_count(handle_.get());
}

std::string_view Statement::Name(int column) const {
  const char* name = sqlite3_column_name(handle_.get(), column);
  return name == nullptr ? std::string_view() : name;
}

std::string_view Statement::DeclaredType(int column) const {
  const char* type = sqlite3_column_decltype(handle_.get(), column);
  return type == nullptr ? std::string_view() : type;
}

ColumnType Statement::Type(int column) const noexcept {
  switch (sqlite3_column_type(handle_.get(), column)) {
    case SQLITE_INTEGER:
      return ColumnType::kInteger;
    case SQLITE_FLOAT:
      return ColumnType::kReal;
    case SQLITE_TEXT:
      return ColumnType::kText;
    case SQLITE_BLOB:
      return ColumnType::kBlob;
    default:
      return ColumnType::kNull;
  }
}

std::int64_t Statement::Integer(int column) const noexcept {
  return sqlite3_column_int64(handle_.get(), column);
}

double Statement::Real(int column) const noexcept {
  return sqlite3_column_double(handle_.get(), column);
}

std::string_view Statement::Text(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle_.get(), column));
  if (text != nullptr) return {text, static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column))};
  const ColumnType type = Type(column);  // an empty blob has a null pointer, too
  if (type != ColumnType::kNull && type != ColumnType::kBlob) throw std::bad_alloc();
  return {};
}

bool Statement::IsReadOnly() const noexcept {
  return sqlite3_stmt_readonly(handle_.get()) != 0;
}

}  // namespace plovix
