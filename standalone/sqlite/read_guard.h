// Lets statements that somebody else wrote only read what they may: everything that is not listed here is
// refused. Used by the connection.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "statement_guard.h"

namespace plovix {

class ReadGuard final : public StatementGuard {
 public:
  // Whether a column of a table or view may be read, even indirectly by a view or by the statements of a
  // virtual table. The column is empty if only the number of rows is needed; the name can then also be that
  // of a common table expression.
  using MayRead = std::function<bool(std::string_view table, std::string_view column)>;
  explicit ReadGuard(MayRead may_read) : may_read_(std::move(may_read)) {}

 private:
  [[nodiscard]] std::optional<Refusal> Judge(int action, std::string_view first,
                                             std::string_view second) const override;

  MayRead may_read_;
};

}  // namespace plovix
