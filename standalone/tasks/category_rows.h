/// @file
/// Category columns that are not in a task file, as rows of the query for them. Used by scripts and tests.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "row_cursor.h"

namespace plovix {

/// The rows of `before` (may be null), whose first column is the category, followed by those of `columns`.
[[nodiscard]] std::unique_ptr<RowCursor> CategoryRows(std::vector<std::string> columns,
                                                      std::unique_ptr<RowCursor> before = nullptr);

}  // namespace plovix
