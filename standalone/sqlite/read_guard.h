// Guards a connection whose statements somebody else wrote, and lets them only read what they may: everything
// that is not listed here is refused while the statement is prepared. Used by the connection.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "sql_failure.h"

struct sqlite3;

namespace plovix {

class ReadGuard final {
 public:
  // Whether a column of a table or view may be read, even indirectly by a view or by the statements of a
  // virtual table. The column is empty if only the number of rows is needed; the name can then also be that
  // of a common table expression.
  using MayRead = std::function<bool(std::string_view table, std::string_view column)>;
  explicit ReadGuard(MayRead may_read) : may_read_(std::move(may_read)) {}

  // Must outlive the database's statements.
  void StandOn(sqlite3* database);
  // The first refusal since the last call.
  [[nodiscard]] std::optional<Refusal> TakeRefusal() { return std::exchange(refused_, std::nullopt); }

 private:
  static int Ask(void* self, int action, const char* first, const char* second, const char* database,
                 const char* view) noexcept;
  [[nodiscard]] std::optional<Refusal> Judge(int action, std::string_view first,
                                             std::string_view second) const;

  MayRead may_read_;
  std::optional<Refusal> refused_;
};

}  // namespace plovix
