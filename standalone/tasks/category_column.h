/// @file
/// The text of the Category column: a task's category list. Used by the storage and by readers of the column
/// of many tasks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "task_record.h"

namespace plovix {

/// Whether there is no category, or only one without a tag, which is what a page makes of an empty box.
[[nodiscard]] bool IsNoCategory(const std::vector<CategoryRecord>& categories);
/// A JSON array of {"tag": text, "public": bool}; the empty text for no category.
[[nodiscard]] std::string EncodeCategories(const std::vector<CategoryRecord>& categories);
/// Reads such an array; a single category without a tag, as in files of former versions, counts as none. Any
/// other text that is not empty is one public category of that name, because the column held plain names
/// before it held arrays.
[[nodiscard]] std::vector<CategoryRecord> DecodeCategories(std::string_view column);

}  // namespace plovix
