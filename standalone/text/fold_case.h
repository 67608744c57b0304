/// @file
/// Texts without case differences, by Unicode's rules. Used wherever names given by people are compared.
#pragma once

#include <plovix/base/requirements.h>

#include <string>
#include <string_view>

namespace plovix {

/// Normalized (NFC) and folded by the default rules, whatever the user's locale. UTF-8; invalid UTF-8 is
/// returned unchanged.
[[nodiscard]] std::string FoldCase(std::string_view text);

}  // namespace plovix
