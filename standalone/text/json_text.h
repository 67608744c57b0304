/// @file
/// Texts with arbitrary bytes as JSON strings, which must be UTF-8; and the nesting depth of JSON. Used by
/// the columns with JSON and by the readers of files.
#pragma once

#include <plovix/base/requirements.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace plovix {

/// Returns UTF-8 unchanged. A byte that is not part of well-formed UTF-8 becomes U+10FFFF (a noncharacter,
/// which no real text contains) and two hexadecimal digits; U+10FFFF itself is doubled.
[[nodiscard]] std::string ToJsonText(std::string_view text);
/// The inverse of ToJsonText.
[[nodiscard]] std::string FromJsonText(std::string_view json_text);

/// Whether a column's text may be passed to a JSON parser: it nests no deeper than columns ever need, so that
/// walking through the values does not exhaust the stack, and has no zero byte, which parsers interpret as
/// its end.
[[nodiscard]] bool IsParsableJson(std::string_view text);

/// Whether ToJsonText returns `text` unchanged and JSON needs no escapes for it.
[[nodiscard]] bool IsPlainJsonText(std::string_view text);

/// Whether lists and objects nest more than `levels` deep in `json`, which need not be well-formed. To be
/// called before parsing text from outside, because code that reads, copies or writes the value is recursive:
/// some ten thousand levels would crash the program.
[[nodiscard]] bool NestsDeeper(std::string_view json, std::size_t levels);

}  // namespace plovix
