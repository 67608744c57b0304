// The text of a column that holds a list of texts: a user's groups, a run's chosen records. Used by the
// storages.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

// A JSON array of texts.
[[nodiscard]] std::string EncodeTexts(const std::vector<std::string>& texts);
// Nothing for any other text: groups have rights, so none is guessed.
[[nodiscard]] std::optional<std::vector<std::string>> DecodeTexts(std::string_view column);

}  // namespace plovix
