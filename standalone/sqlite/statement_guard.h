// Guards a connection whose statements somebody else wrote: asks, while a statement is prepared, about
// everything that it would do. Used by the connection; derived for what a connection may do.
#pragma once

#include <optional>
#include <string_view>
#include <utility>

#include "sql_failure.h"

struct sqlite3;

namespace plovix {

class StatementGuard {
 public:
  virtual ~StatementGuard() = default;
  // Must outlive the database's statements, or be replaced before.
  void StandOn(sqlite3* database);
  // The first refusal since the last call.
  [[nodiscard]] std::optional<Refusal> TakeRefusal() { return std::exchange(refused_, std::nullopt); }

 protected:
  // SQLite's action codes with their first two arguments, empty where there is none; nothing allows it.
  [[nodiscard]] virtual std::optional<Refusal> Judge(int action, std::string_view first,
                                                     std::string_view second) const = 0;

 private:
  static int Ask(void* self, int action, const char* first, const char* second, const char* database,
                 const char* view) noexcept;

  std::optional<Refusal> refused_;
};

// @{
// Functions that only compute a value from their arguments or from the rows; pragmas that virtual tables
// read, without setting anything.
[[nodiscard]] bool IsHarmlessFunction(std::string_view name);
[[nodiscard]] bool IsHarmlessPragma(std::string_view name, std::string_view value);
// @}

}  // namespace plovix
