#include "settings_column.h"

#include <plovix/standalone/text/json_text.h>

#include <nlohmann/json.hpp>

namespace plovix {

std::string EncodeSettings(const std::map<std::string, std::string>& settings) {
  auto object = nlohmann::json::object();
  for (const auto& [key, value] : settings) object[ToJsonText(key)] = ToJsonText(value);
  return object.dump();
}

std::map<std::string, std::string> DecodeSettings(std::string_view column) {
  const auto object =
      IsParsableJson(column) ? nlohmann::json::parse(column, nullptr, false) : nlohmann::json();
  if (!object.is_object()) return {{"", std::string(column)}};
  std::map<std::string, std::string> settings;
  for (const auto& [key, value] : object.items()) {
    const bool is_text = value.is_string();
    settings[FromJsonText(key)] = is_text ? FromJsonText(value.get_ref<const std::string&>()) : value.dump();
  }
  return settings;
}

}  // namespace plovix
