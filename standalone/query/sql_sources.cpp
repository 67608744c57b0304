#include "sql_sources.h"

#include <plovix/base/same_name.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

#include "sql_tokens.h"

namespace plovix {
namespace {

using TokenKind = SqlToken::Kind;

constexpr std::size_t kDeepestBrackets = 200;  // brackets; the database's own parser stops at half of that

// Only words that cannot be an alias, hence not WINDOW.
constexpr auto kBehindFrom = std::to_array<std::string_view>(
    {"SELECT", "VALUES", "WHERE", "GROUP", "HAVING", "ORDER", "LIMIT", "UNION", "EXCEPT", "INTERSECT"});

class SourceReader {
 public:
  explicit SourceReader(std::string_view sql) : tokens_(SqlTokens(sql)) {}

  SqlSources Read() {
    for (at_ = 0; tokens_[at_].kind != TokenKind::kEnd && !found_.too_deep; ++at_) Take(tokens_[at_]);
    return std::move(found_);
  }

 private:
  struct Bracket {
    bool in_from = false;
    std::optional<std::size_t> common;  // the common table whose body this is
  };

  void Take(const SqlToken& token) {
    if (HidesItsRest(token)) found_.too_deep = true;
    if (token.IsSign("(")) return Open();
    if (token.IsSign(")")) {
      if (brackets_.size() > 1) brackets_.pop_back();
      return;
    }
    if (IsName(token) && IsAtSource(at_)) return Add(token);
    if (token.Is("FROM") || token.Is("JOIN")) brackets_.back().in_from = true;
    if (std::ranges::any_of(kBehindFrom, [&token](std::string_view word) { return token.Is(word); }))
      brackets_.back().in_from = false;
    if (token.Is("AS")) Announce();
  }

  void Open() {
    brackets_.push_back({brackets_.back().in_from, {}});
    if (body_at_ == at_) brackets_.back().common = found_.common.size() - 1;
    found_.too_deep = brackets_.size() > kDeepestBrackets;
  }

  // The database accepts texts as names, too.
  static bool IsName(const SqlToken& token) {
    return token.kind == TokenKind::kWord || token.kind == TokenKind::kName || token.kind == TokenKind::kText;
  }

  [[nodiscard]] bool IsAtSource(std::size_t at) const {
    if (at == 0) return false;
    const SqlToken& before = tokens_[at - 1];
    if (before.Is("FROM") || before.Is("JOIN") || before.Is("IN")) return true;
    if (before.IsSign(".")) return at >= 2 && IsAtSource(at - 2);
    return brackets_.back().in_from && (before.IsSign(",") || before.IsSign("("));
  }

  void Add(const SqlToken& token) {
    std::string name = LowerName(token.text);
    for (const Bracket& bracket : brackets_) {
      if (bracket.common) found_.common[*bracket.common].sources.push_back(name);
    }
    found_.all.push_back(std::move(name));
  }

  // Called at the AS of "name [(columns)] AS [[NOT] MATERIALIZED] (".
  void Announce() {
    std::size_t body = at_ + 1;
    while (tokens_[body].Is("NOT") || tokens_[body].Is("MATERIALIZED")) ++body;
    if (!tokens_[body].IsSign("(") || at_ == 0) return;
    std::size_t name = at_ - 1;
    if (tokens_[name].IsSign(")")) {
      while (name > 0 && !tokens_[name].IsSign("(")) --name;
      if (name > 0) --name;
    }
    found_.common.push_back({LowerName(tokens_[name].text), {}});
    body_at_ = body;
  }

  std::vector<SqlToken> tokens_;
  std::size_t at_ = 0;
  std::vector<Bracket> brackets_{{}};
  std::optional<std::size_t> body_at_;
  SqlSources found_;
};

}  // namespace

SqlSources SourcesOf(std::string_view sql) {
  return SourceReader(sql).Read();
}

std::string LowerName(std::string_view name) {
  std::string lower(name);
  std::ranges::transform(name, lower.begin(), LowerAscii);
  return lower;
}

}  // namespace plovix
