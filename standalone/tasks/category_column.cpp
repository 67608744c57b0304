#include "category_column.h"

#include <plovix/standalone/text/json_text.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace plovix {
namespace {

bool IsCategory(const nlohmann::json& item) {
  return item.is_object() && item.contains("tag") && item["tag"].is_string() && item.contains("public") &&
         item["public"].is_boolean();
}

bool Take(std::string_view& text, std::string_view prefix) {
  if (!text.starts_with(prefix)) return false;
  text.remove_prefix(prefix.size());
  return true;
}

// Reads what EncodeCategories writes if no tag needs an escape; nothing for any other text. Otherwise lists
// of many tasks would spend most of their time in the JSON library.
std::optional<std::vector<CategoryRecord>> DecodePlain(std::string_view rest) {
  std::vector<CategoryRecord> categories;
  if (!Take(rest, "[")) return std::nullopt;
  do {
    if (!Take(rest, R"({"tag":")")) return std::nullopt;
    const std::string_view tag = rest.substr(0, rest.find('"'));
    if (!IsPlainJsonText(tag)) return std::nullopt;
    rest.remove_prefix(tag.size());
    const bool is_public = Take(rest, R"(","public":true})");
    if (!is_public && !Take(rest, R"(","public":false})")) return std::nullopt;
    categories.push_back({std::string(tag), is_public});
  } while (Take(rest, ","));
  if (rest != "]") return std::nullopt;
  return categories;
}

std::vector<CategoryRecord> DecodeAll(std::string_view column) {
  if (column.empty()) return {};
  if (auto categories = DecodePlain(column)) return std::move(*categories);
  const auto array =
      IsParsableJson(column) ? nlohmann::json::parse(column, nullptr, false) : nlohmann::json();
  if (!array.is_array() || !std::ranges::all_of(array, IsCategory)) return {{std::string(column), true}};
  std::vector<CategoryRecord> categories;
  for (const auto& item : array) {
    categories.push_back(
        {FromJsonText(item["tag"].get_ref<const std::string&>()), item["public"].get<bool>()});
  }
  return categories;
}

}  // namespace

bool IsNoCategory(const std::vector<CategoryRecord>& categories) {
  return categories.empty() || (categories.size() == 1 && categories[0].tag.empty());
}

std::string EncodeCategories(const std::vector<CategoryRecord>& categories) {
  if (IsNoCategory(categories)) return {};
  auto array = nlohmann::ordered_json::array();
  for (const CategoryRecord& category : categories) {
    array.push_back({{"tag", ToJsonText(category.tag)}, {"public", category.is_public}});
  }
  return array.dump();
}

std::vector<CategoryRecord> DecodeCategories(std::string_view column) {
  std::vector<CategoryRecord> categories = DecodeAll(column);
  if (IsNoCategory(categories)) categories.clear();
  return categories;
}

}  // namespace plovix
