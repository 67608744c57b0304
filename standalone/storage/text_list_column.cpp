#include "group_column.h"

#include <plovix/standalone/text/json_text.h>

#include <nlohmann/json.hpp>

namespace plovix {

std::string EncodeGroups(const std::set<std::string>& groups) {
  auto array = nlohmann::json::array();
  for (const std::string& group : groups) array.push_back(ToJsonText(group));
  return array.dump();
}

std::optional<std::set<std::string>> DecodeGroups(std::string_view column) {
  const auto array =
      IsParsableJson(column) ? nlohmann::json::parse(column, nullptr, false) : nlohmann::json();
  if (!array.is_array()) return std::nullopt;
  std::set<std::string> groups;
  for (const auto& item : array) {
    if (!item.is_string()) return std::nullopt;
    groups.insert(FromJsonText(item.get_ref<const std::string&>()));
  }
  return groups;
}

}  // namespace plovix
