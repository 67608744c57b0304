// The text of an action's Settings column. Used by the storage.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace plovix {

// A JSON object of texts.
[[nodiscard]] std::string EncodeSettings(const std::map<std::string, std::string>& settings);
// Reads such an object. Nothing is dropped from a column that somebody else wrote: a value that is not a text
// becomes its JSON text, and a column that is not an object becomes the setting with the empty key.
[[nodiscard]] std::map<std::string, std::string> DecodeSettings(std::string_view column);

}  // namespace plovix
