#include "text_list_column.h"

#include <plovix/standalone/text/json_text.h>

#include <nlohmann/json.hpp>

namespace plovix {

std::string EncodeTexts(const std::vector<std::string>& texts) {
  auto array = nlohmann::json::array();
  for (const std::string& text : texts) array.push_back(ToJsonText(text));
  return array.dump();
}

std::optional<std::vector<std::string>> DecodeTexts(std::string_view column) {
  const auto array =
      IsParsableJson(column) ? nlohmann::json::parse(column, nullptr, false) : nlohmann::json();
  if (!array.is_array()) return std::nullopt;
  std::vector<std::string> texts;
  for (const auto& item : array) {
    if (!item.is_string()) return std::nullopt;
    texts.push_back(FromJsonText(item.get_ref<const std::string&>()));
  }
  return texts;
}

}  // namespace plovix
