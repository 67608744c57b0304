/// @file
/// Category columns that stand in no task file, as rows of the query that asks for them. Used by scripts and
/// tests.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "row_cursor.h"

namespace plovix {

/// The rows of `before` (may be nothing), whose first column is the category, and behind them those of
/// `columns`.
[[nodiscard]] std::unique_ptr<RowCursor> CategoryRows(std::vector<std::string> columns,
                                                      std::unique_ptr<RowCursor> before = nullptr);

}  // namespace plovix
