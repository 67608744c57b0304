// The text of a user's GroupNames column. Used by the users' storage.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace plovix {

// A JSON array of texts.
[[nodiscard]] std::string EncodeGroups(const std::set<std::string>& groups);
// Nothing for any other text: groups have rights, so none is guessed.
[[nodiscard]] std::optional<std::set<std::string>> DecodeGroups(std::string_view column);

}  // namespace plovix
