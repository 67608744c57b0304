#include "primary_key.h"

#include <plovix/base/same_name.h>
#include <plovix/standalone/query/sql_tokens.h>

#include <algorithm>
#include <array>
#include <span>
#include <vector>

namespace plovix {
namespace {

// Whether a table constraint begins here.
bool IsConstraint(const SqlToken& token) {
  constexpr auto kWords =
      std::to_array<std::string_view>({"CONSTRAINT", "PRIMARY", "UNIQUE", "CHECK", "FOREIGN"});
  return std::ranges::any_of(kWords, [&token](std::string_view word) { return token.Is(word); });
}

// The only name in the brackets that begin here; empty if there are several.
std::string OnlyNameIn(std::span<const SqlToken> brackets) {
  for (const SqlToken& token : brackets) {
    if (token.IsSign(",")) return {};
    if (token.IsSign(")")) break;
  }
  return brackets[1].text;
}

}  // namespace

std::string SinglePrimaryKey(std::string_view sql) {
  const std::vector<SqlToken> tokens = SqlTokens(sql);  // ends with kEnd, so there is always a next one
  std::vector<std::string_view> columns;
  int depth = 0;
  for (std::size_t at = 0; at + 2 < tokens.size(); ++at) {
    const bool begins_definition =
        (depth == 0 && tokens[at].IsSign("(")) || (depth == 1 && tokens[at].IsSign(","));
    depth += tokens[at].IsSign("(") ? 1 : tokens[at].IsSign(")") ? -1 : 0;
    if (begins_definition && !IsConstraint(tokens[at + 1])) columns.push_back(tokens[at + 1].text);
    if (depth != 1 || !tokens[at].Is("PRIMARY") || !tokens[at + 1].Is("KEY")) continue;
    if (!tokens[at + 2].IsSign("(")) return std::string(columns.back());
    const std::string name = OnlyNameIn(std::span(tokens).subspan(at + 2));
    const auto declared =
        std::ranges::find_if(columns, [&name](std::string_view column) { return SameName(column, name); });
    return declared == columns.end() ? std::string() : std::string(*declared);
  }
  return {};
}

}  // namespace plovix
