/// @file
/// Language tables from JSON files.
#pragma once

#include <string>
#include <string_view>

#include "text_table.h"

namespace plovix {

/// Reads a language file:
///   { "language": "en", "name": "English", "direction": "ltr",
///     "pages": { "4": "text", ... }, "host": { "list.new": "text", ... } }
/// Fails with a message that names `source` and the place if the text is not such a file.
[[nodiscard]] TextTable ParseLanguage(std::string_view json, const std::string& source);

}  // namespace plovix
