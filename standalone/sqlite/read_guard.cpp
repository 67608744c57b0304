#include "read_guard.h"

#include <sqlite3.h>

#include <string>

namespace plovix {
namespace {

constexpr std::string_view kSchemaTable = "sqlite_master";

}  // namespace

// Ignores the view that asks, because a common table expression can have any view's name.
std::optional<Refusal> ReadGuard::Judge(int action, std::string_view first, std::string_view second) const {
  using enum Refusal::What;
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_RECURSIVE:
      return std::nullopt;
    case SQLITE_UPDATE:
      // Requested, although nothing is written, when a virtual table declares its columns. The database
      // itself refuses a statement that does this.
      if (first == kSchemaTable) return std::nullopt;
      return Refusal{kAction, std::string(first)};
    case SQLITE_READ:
      if (first == kSchemaTable && second == "ROWID") return std::nullopt;  // likewise
      if (may_read_(first, second)) return std::nullopt;
      return Refusal{kTable, std::string(first)};
    case SQLITE_FUNCTION:
      if (IsHarmlessFunction(second)) return std::nullopt;
      return Refusal{kFunction, std::string(second)};
    case SQLITE_PRAGMA:
      if (IsHarmlessPragma(first, second)) return std::nullopt;
      return Refusal{kAction, std::string(first)};
    default:
      return Refusal{kAction, std::string(first)};
  }
}

}  // namespace plovix
