#include "category_column.h"

#include <plovix/standalone/model/json_text.h>

#include <algorithm>
#include <nlohmann/json.hpp>

namespace plovix {
namespace {

bool IsCategory(const nlohmann::json& item) {
  return item.is_object() && item.contains("tag") && item["tag"].is_string() && item.contains("public") &&
         item["public"].is_boolean();
}

}  // namespace

std::string EncodeCategories(const std::vector<CategoryRecord>& categories) {
  if (categories.empty()) return {};
  auto array = nlohmann::ordered_json::array();
  for (const CategoryRecord& category : categories) {
    array.push_back({{"tag", ToJsonText(category.tag)}, {"public", category.is_public}});
  }
  return array.dump();
}

std::vector<CategoryRecord> DecodeCategories(std::string_view column) {
  if (column.empty()) return {};
  const auto array = nlohmann::json::parse(column, nullptr, false);
  if (!array.is_array() || !std::ranges::all_of(array, IsCategory)) return {{std::string(column), true}};
  std::vector<CategoryRecord> categories;
  for (const auto& item : array) {
    categories.push_back(
        {FromJsonText(item["tag"].get_ref<const std::string&>()), item["public"].get<bool>()});
  }
  return categories;
}

}  // namespace plovix
