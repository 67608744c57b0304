// The category column: categories read from any text, written and read again by both readers are the same;
// and categories of any bytes are preserved. Also the nesting depth of JSON.
#include <plovix/standalone/tasks/category_column.h>
#include <plovix/standalone/text/json_text.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>

#include "fuzzer.h"

namespace plovix::fuzz {
namespace {

using Categories = std::vector<CategoryRecord>;

void ComesBack(const Categories& categories) {
  const std::string column = EncodeCategories(categories);
  Require(column.empty() || nlohmann::json::accept(column));
  Require(DecodeCategories(column) == (IsNoCategory(categories) ? Categories{} : categories));
}

// The nesting depth of lists and objects as the parser counts it; nothing if the text is not JSON.
std::optional<std::size_t> Levels(const std::string& text) {
  using Json = nlohmann::json;
  std::size_t most = 0;
  const auto count = [&](int depth, Json::parse_event_t event, Json& /*value*/) {
    if (event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start)
      most = std::max(most, static_cast<std::size_t>(depth) + 1);
    return true;
  };
  return Json::parse(text, count, false).is_discarded() ? std::nullopt : std::optional(most);
}

}  // namespace

void Try(std::string_view input) {
  const std::string text(input);
  const Categories categories = DecodeCategories(text);
  ComesBack(categories);
  // A blank before an array changes nothing but the reader.
  const Categories blank = DecodeCategories(" " + text);
  const bool is_array = blank != Categories{{" " + text, true}};
  Require(categories == (is_array ? blank : text.empty() ? Categories{} : Categories{{text, true}}));
  Require(!is_array || text.find('\0') == text.npos);  // which the parser interprets as the end

  Require(FromJsonText(ToJsonText(text)) == text);
  if (const auto levels = Levels(text); levels && text.find('\0') == text.npos)
    Require(!NestsDeeper(text, *levels) && (*levels == 0 || NestsDeeper(text, *levels - 1)));
  Require(nlohmann::json::accept('"' + text + '"') || !IsPlainJsonText(text));
  Categories any;
  for (std::string_view rest = input; !rest.empty();) {
    const std::size_t length = std::min<std::size_t>(static_cast<std::uint8_t>(rest[0]) / 2, rest.size() - 1);
    any.push_back({std::string(rest.substr(1, length)), rest[0] % 2 == 0});
    rest.remove_prefix(length + 1);
  }
  ComesBack(any);
}

}  // namespace plovix::fuzz
