#include "change_guard.h"

#include <plovix/base/same_name.h>
#include <sqlite3.h>

#include <string>

namespace plovix {
namespace {

// How the names of Plovix's own tables begin, in whatever file they are.
constexpr std::string_view kOwnPrefix = "Velo";

bool IsOwn(std::string_view table) {
  return SameName(table.substr(0, kOwnPrefix.size()), kOwnPrefix);
}

}  // namespace

// Asked about the statements of the file's triggers and views, too.
std::optional<Refusal> ChangeGuard::Judge(int action, std::string_view first, std::string_view second) const {
  using enum Refusal::What;
  switch (action) {
    case SQLITE_SELECT:
    case SQLITE_RECURSIVE:
      return std::nullopt;
    case SQLITE_READ:
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
    case SQLITE_CREATE_TABLE:
    case SQLITE_CREATE_VIEW:
    case SQLITE_DROP_TABLE:
    case SQLITE_DROP_VIEW:
    case SQLITE_ANALYZE:
      return IsOwn(first) ? std::optional(Refusal{kTable, std::string(first)}) : std::nullopt;
    case SQLITE_CREATE_INDEX:
    case SQLITE_DROP_INDEX:
    case SQLITE_DROP_TRIGGER:
      return IsOwn(second) ? std::optional(Refusal{kTable, std::string(second)}) : std::nullopt;
    case SQLITE_REINDEX:
      return std::nullopt;
    case SQLITE_FUNCTION:
      if (IsHarmlessFunction(second)) return std::nullopt;
      return Refusal{kFunction, std::string(second)};
    case SQLITE_PRAGMA:
      if (IsHarmlessPragma(first, second)) return std::nullopt;
      return Refusal{kAction, "PRAGMA " + std::string(first)};
    default:
      return Refusal{};
  }
}

}  // namespace plovix
