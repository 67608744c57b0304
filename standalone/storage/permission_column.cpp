#include "permission_column.h"

#include <plovix/standalone/text/json_text.h>

#include <array>
#include <nlohmann/json.hpp>
#include <utility>

namespace plovix {
namespace {

constexpr const char* kSubject = "subject";
constexpr std::array<std::pair<const char*, bool PermissionRecord::*>, 5> kGrants{{
    {"group", &PermissionRecord::is_group},
    {"view", &PermissionRecord::view},
    {"run", &PermissionRecord::run},
    {"edit", &PermissionRecord::edit},
    {"delete", &PermissionRecord::erase},
}};

}  // namespace

std::string EncodePermissions(const PermissionSet& permissions) {
  auto array = nlohmann::ordered_json::array();
  for (const PermissionRecord& permission : permissions) {
    nlohmann::ordered_json item{{kSubject, ToJsonText(permission.subject)}};
    for (const auto& [key, flag] : kGrants) item[key] = permission.*flag;
    array.push_back(std::move(item));
  }
  return array.dump();
}

std::optional<PermissionSet> DecodePermissions(std::string_view column) {
  const auto array =
      IsParsableJson(column) ? nlohmann::json::parse(column, nullptr, false) : nlohmann::json();
  if (!array.is_array()) return std::nullopt;
  PermissionSet permissions;
  for (const auto& item : array) {
    if (!item.is_object() || !item.contains(kSubject) || !item[kSubject].is_string()) return std::nullopt;
    PermissionRecord& permission = permissions.emplace_back();
    permission.subject = FromJsonText(item[kSubject].get_ref<const std::string&>());
    for (const auto& [key, flag] : kGrants) {
      if (!item.contains(key) || !item[key].is_boolean()) return std::nullopt;
      permission.*flag = item[key].get<bool>();
    }
  }
  return permissions;
}

}  // namespace plovix
