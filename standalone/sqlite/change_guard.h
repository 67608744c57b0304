// Lets a statement that somebody else wrote change data, tables, indexes and views, but nothing outside the
// file, and nothing of Plovix's own. Used by the connection.
#pragma once

#include "statement_guard.h"

namespace plovix {

class ChangeGuard final : public StatementGuard {
 private:
  [[nodiscard]] std::optional<Refusal> Judge(int action, std::string_view first,
                                             std::string_view second) const override;
};

}  // namespace plovix
