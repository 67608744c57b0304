/// @file
/// Texts that may hold any bytes, as JSON strings, which may hold only UTF-8; and how deep JSON is nested.
/// Used by the columns that are JSON and by the readers of files.
#pragma once

#include <plovix/base/requirements.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace plovix {

/// Gives back UTF-8 as it is. A byte that is no part of well-formed UTF-8 becomes U+10FFFF (which is no
/// character, so no real text holds it) and two hexadecimal digits; U+10FFFF itself is doubled.
[[nodiscard]] std::string ToJsonText(std::string_view text);
/// The text that ToJsonText made `json_text` from.
[[nodiscard]] std::string FromJsonText(std::string_view json_text);

/// Whether a column's text may be given to a JSON parser: it nests no deeper than a column ever needs, so
/// that whoever walks through the values does not run out of stack, and holds no zero byte, which parsers
/// take for its end.
[[nodiscard]] bool IsParsableJson(std::string_view text);

/// Whether `text` is its own JSON text, and JSON writes it between its quotes without an escape.
[[nodiscard]] bool IsPlainJsonText(std::string_view text);

/// Whether lists and objects stand in each other more than `levels` deep in `json`, well-formed or not up to
/// there. To be asked before text from outside is parsed where what reads, copies or writes the value calls
/// itself for each level: some ten thousand levels end the program.
[[nodiscard]] bool NestsDeeper(std::string_view json, std::size_t levels);

}  // namespace plovix
