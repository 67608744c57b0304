// Strict JSON, for files that people edit by hand and that must not be half understood. Used by the reader of
// exported tasks.
#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

#include "file_source.h"

namespace plovix {

// The place of a member or an item in a file: "task.actions[0].kind"; items are counted from 0.
[[nodiscard]] std::string MemberPlace(const std::string& parent, std::string_view name);
[[nodiscard]] std::string ItemPlace(const std::string& parent, std::size_t index);

// Refuses through `source`: invalid JSON (including ill-formed UTF-8 and NUL bytes), with line and column;
// lists and objects nested deeper than `levels`; and a name that occurs twice in an object.
[[nodiscard]] nlohmann::json ParseStrict(std::string_view text, std::size_t levels, const FileSource& source);

}  // namespace plovix
