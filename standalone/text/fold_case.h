/// @file
/// Texts without their differences of case, by Unicode. Used wherever names that people give are compared.
#pragma once

#include <plovix/base/requirements.h>

#include <string>
#include <string_view>

namespace plovix {

/// Normalized (NFC) and folded by the default rules, whatever the user's locale. UTF-8; a text that is none
/// comes back as it is.
[[nodiscard]] std::string FoldCase(std::string_view text);

}  // namespace plovix
