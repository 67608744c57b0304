// The category column: what is read from any text is written and read again as the same, by both of its
// readers; and categories of any bytes come back.
#include <plovix/standalone/model/category_column.h>
#include <plovix/standalone/model/json_text.h>

#include <nlohmann/json.hpp>

#include "fuzzer.h"

namespace plovix::fuzz {
namespace {

using Categories = std::vector<CategoryRecord>;

void ComesBack(const Categories& categories) {
  const std::string column = EncodeCategories(categories);
  Require(column.empty() || nlohmann::json::accept(column));
  Require(DecodeCategories(column) == (IsNoCategory(categories) ? Categories{} : categories));
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
  Require(!is_array || text.find('\0') == text.npos);  // which the parser takes for the end

  Require(FromJsonText(ToJsonText(text)) == text);
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
