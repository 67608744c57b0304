// Stands on a connection whose statements somebody else wrote, and lets them do nothing but read what they
// may: everything that is not named here is refused while the statement is prepared. Used by the connection.
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
  // Whether a column of a table or view may be read, also by a view that reads it in its turn, and by what a
  // virtual table runs. The column is empty where only the number of rows is asked for; the name is then
  // that of a common table expression, too.
  using MayRead = std::function<bool(std::string_view table, std::string_view column)>;
  explicit ReadGuard(MayRead may_read) : may_read_(std::move(may_read)) {}

  // Must outlive the database's statements.
  void StandOn(sqlite3* database);
  // What was refused first since it was last asked for.
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
