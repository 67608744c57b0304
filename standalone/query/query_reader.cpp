#include "query_reader.h"

#include <plovix/base/same_name.h>

#include <algorithm>
#include <array>

#include "sql_tokens.h"
#include "where_tree.h"

namespace plovix {
namespace {

using TokenKind = SqlToken::Kind;

// Redundant nested brackets are no reason to refuse a text, up to this depth.
constexpr int kDeepestTree = 50;

constexpr auto kClauses = std::to_array<std::string_view>(
    {"ORDER", "GROUP", "HAVING", "LIMIT", "OFFSET", "WINDOW", "UNION", "EXCEPT", "INTERSECT"});
constexpr auto kJoins =
    std::to_array<std::string_view>({"JOIN", "NATURAL", "LEFT", "RIGHT", "FULL", "INNER", "OUTER", "CROSS"});
constexpr auto kOperators = std::to_array<std::string_view>(
    {"IS", "IN", "BETWEEN", "GLOB", "REGEXP", "MATCH", "COLLATE", "LIKE", "ESCAPE"});

bool IsOneOf(const SqlToken& token, std::span<const std::string_view> keywords) {
  return std::ranges::any_of(keywords, [&token](std::string_view word) { return token.Is(word); });
}

// The position in the text. The first problem is kept and ends the reading.
class Reader {
 public:
  Reader(std::string_view text, std::string_view object, std::span<const FieldRecord> fields)
      : tokens_(SqlTokens(text)), object_(object), fields_(fields) {}

  std::variant<NothingAsked, QueryModel, NotExpressible> Read() {
    if (Next().kind == TokenKind::kEnd) return NothingAsked{};
    QueryModel model{std::string(object_), Join::kAll, {}};
    ReadSource();
    if (TakeWord("WHERE")) {
      WhereNode tree = ReadAny(0);
      if (!problem_ && !Flatten(std::move(tree), model)) Fail("query.reason.depth");
    }
    while (TakeSign(";")) statement_ended_ = true;
    ExpectEnd();
    if (problem_) return *problem_;
    return model;
  }

 private:
  [[nodiscard]] const SqlToken& Next(std::size_t ahead = 0) const {
    return tokens_[std::min(position_ + ahead, tokens_.size() - 1)];
  }
  bool TakeWord(std::string_view keyword) { return TakeIf(Next().Is(keyword)); }
  bool TakeSign(std::string_view sign) { return TakeIf(Next().IsSign(sign)); }
  bool TakeIf(bool here) {
    if (here) ++position_;
    return here;
  }

  void Fail(std::string_view reason, std::string detail = {}) {
    if (!problem_) problem_ = NotExpressible{reason, std::move(detail)};
    position_ = tokens_.size() - 1;
  }

  // Fails at something that is allowed in SQL but not in a model.
  void FailHere() {
    const SqlToken& token = Next();
    if (token.kind == TokenKind::kUnreadable || token.kind == TokenKind::kEnd)
      return Fail("query.reason.syntax");
    if (token.Is("NOT")) return Fail("query.reason.not");
    if (IsOneOf(token, kClauses)) return Fail("query.reason.clause", token.text);
    if (IsOneOf(token, kOperators)) return Fail("query.reason.operator", token.text);
    if (token.Is("SELECT") || token.Is("EXISTS")) return Fail("query.reason.several");
    if (token.kind == TokenKind::kWord && Next(1).IsSign("("))
      return Fail("query.reason.function", token.text);
    Fail("query.reason.expression");
  }

  // "SELECT * FROM object".
  void ReadSource() {
    if (!TakeWord("SELECT")) return Fail("query.reason.select");
    if (!TakeSign("*") || Next().IsSign(",")) return Fail("query.reason.columns");
    if (!TakeWord("FROM"))
      return Fail(Next().kind == TokenKind::kEnd ? "query.reason.syntax" : "query.reason.columns");
    if (Next().IsSign("(")) return Fail("query.reason.several");
    if (!IsName(Next())) return Fail("query.reason.syntax");
    if (!SameName(Next().text, object_) || Next(1).IsSign(".") || Next(1).IsSign("("))
      return Fail("query.reason.object", Next().text);
    ++position_;
    if (Next().IsSign(",") || IsOneOf(Next(), kJoins)) return Fail("query.reason.several");
    if (Next().Is("AS") || IsName(Next())) {
      // WINDOW and OFFSET can also be names.
      return IsOneOf(Next(), kClauses) ? FailHere() : Fail("query.reason.alias");
    }
  }

  void ExpectEnd() {
    if (Next().kind == TokenKind::kEnd) return;
    if (statement_ended_) return Fail("query.reason.statements");
    FailHere();
  }

  [[nodiscard]] static bool IsName(const SqlToken& token) {
    return token.kind == TokenKind::kName || (token.kind == TokenKind::kWord && !IsReserved(token));
  }

  WhereNode ReadAny(int depth) {
    return ReadJoined(Join::kAny, "OR", [this, depth] {
      return ReadJoined(Join::kAll, "AND", [this, depth] { return ReadOperand(depth); });
    });
  }

  template <typename ReadPart>
  WhereNode ReadJoined(Join join, std::string_view word, const ReadPart& read) {
    WhereNode node{join, false, {}, {}};
    do {
      node.parts.push_back(read());
    } while (TakeWord(word));
    return Simplified(std::move(node));
  }

  WhereNode ReadOperand(int depth) {
    if (!Next().IsSign("(")) return {Join::kAll, false, {}, ReadCondition()};
    if (depth == kDeepestTree) {
      Fail("query.reason.depth");
      return {};
    }
    ++position_;
    WhereNode node = ReadAny(depth + 1);
    if (!TakeSign(")")) FailHere();
    node.bracketed = true;
    return node;
  }

  Condition ReadCondition() {
    Condition condition;
    if (++conditions_ > kMostConditions) Fail("query.reason.many", std::to_string(kMostConditions));
    const SqlToken name = Next();
    if (!IsName(name) || Next(1).IsSign("(")) {
      FailHere();
      return condition;
    }
    const FieldRecord* field = FindField(fields_, name.text);
    if (field == nullptr) {
      Fail("query.reason.field", name.text);
      return condition;
    }
    condition.field = field->name;
    ++position_;
    ReadComparison(condition, field->type);
    if (!problem_ && CheckCondition(condition, field->type)) Fail("query.reason.type", field->name);
    return condition;
  }

  void ReadComparison(Condition& condition, FieldType type) {
    if (TakeWord("LIKE")) return ReadPattern(condition);
    if (TakeIf(Next().Is("IS") && Next(1).Is("NOT") && Next(2).Is("NULL"))) {
      position_ += 2;
      condition.comparison = Comparison::kIsNotEmpty;
    } else if (TakeIf(Next().Is("IS") && Next(1).Is("NULL"))) {
      ++position_;
      condition.comparison = Comparison::kIsEmpty;
    } else if (TakeWord("ISNULL")) {
      condition.comparison = Comparison::kIsEmpty;
    } else if (TakeWord("NOTNULL")) {
      condition.comparison = Comparison::kIsNotEmpty;
    } else if (const auto comparison = TakeOperator()) {
      condition.comparison = *comparison;
      ReadValue(condition, type);
    } else {
      FailHere();
    }
  }

  std::optional<Comparison> TakeOperator() {
    static constexpr auto kSigns =
        std::to_array<std::pair<std::string_view, Comparison>>({{"=", Comparison::kEquals},
                                                                {"==", Comparison::kEquals},
                                                                {"<>", Comparison::kDiffers},
                                                                {"!=", Comparison::kDiffers},
                                                                {"<", Comparison::kLess},
                                                                {"<=", Comparison::kAtMost},
                                                                {">", Comparison::kGreater},
                                                                {">=", Comparison::kAtLeast}});
    for (const auto& [sign, comparison] : kSigns) {
      if (TakeSign(sign)) return comparison;
    }
    return std::nullopt;
  }

  // A text compared with a field of numbers, or the other way round, can mislead: whether the database
  // converts it depends on how the column was declared.
  void ReadValue(Condition& condition, FieldType type) {
    const auto number = TakeNumber();
    const auto text = number ? std::nullopt : TakeText();
    if (!number && !text) return FailAtValue();
    if (number.has_value() != IsNumeric(type)) return Fail("query.reason.type", condition.field);
    condition.value = number ? *number : *text;
  }

  std::optional<std::string> TakeNumber() {
    const bool sign = Next().IsSign("-") || Next().IsSign("+");
    if (Next(sign ? 1 : 0).kind == TokenKind::kNumber) {
      std::string number = Next().IsSign("-") ? "-" : "";
      position_ += sign ? 1 : 0;
      number += Next().text;
      ++position_;
      return number;
    }
    // A field of that name takes precedence.
    const bool word = (Next().Is("TRUE") || Next().Is("FALSE")) && FindField(fields_, Next().text) == nullptr;
    if (!word) return std::nullopt;
    std::string number = Next().Is("TRUE") ? "1" : "0";
    ++position_;
    return number;
  }

  // A text in quotes, or CAST(x'...' AS TEXT).
  std::optional<std::string> TakeText() {
    const std::size_t start = position_;
    if (Next().kind == TokenKind::kText) return tokens_[position_++].text;
    if (TakeWord("CAST") && TakeSign("(") && Next().kind == TokenKind::kBytes) {
      std::string text = tokens_[position_++].text;
      if (TakeWord("AS") && TakeWord("TEXT") && TakeSign(")")) return text;
    }
    position_ = start;
    return std::nullopt;
  }

  void FailAtValue() {
    const SqlToken& token = Next();
    if (token.Is("NULL")) return Fail("query.reason.null");
    if (!IsName(token) || Next(1).IsSign("(")) return FailHere();
    if (FindField(fields_, token.text) != nullptr) return Fail("query.reason.fields");
    if (token.quote == '"') return Fail("query.reason.quotes", token.text);
    Fail("query.reason.field", token.text);
  }

  void ReadPattern(Condition& condition) {
    const auto pattern = TakeText();
    if (!pattern) return Fail("query.reason.pattern");
    std::optional<char> escape;
    if (TakeWord("ESCAPE")) {
      const auto text = TakeText();
      if (!text || text->size() != 1 || *text == "%" || *text == "_") return Fail("query.reason.pattern");
      escape = text->front();
    }
    if (!ReadWildcards(*pattern, escape, condition)) Fail("query.reason.pattern");
  }

  // A plain text with "%" before it, after it, or both.
  static bool ReadWildcards(std::string_view pattern, std::optional<char> escape, Condition& condition) {
    const bool before = pattern.starts_with('%') && escape != '%';
    if (before) pattern.remove_prefix(1);
    bool behind = false;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
      if (behind) return false;
      const char character = pattern[at];
      if (character == escape) {
        if (++at == pattern.size()) return false;
        condition.value += pattern[at];
      } else if (character == '%') {
        behind = true;
      } else if (character == '_') {
        return false;
      } else {
        condition.value += character;
      }
    }
    condition.comparison = !behind   ? Comparison::kEndsWith
                           : !before ? Comparison::kBeginsWith
                                     : Comparison::kContains;
    return (before || behind) && !condition.value.empty();
  }

  std::vector<SqlToken> tokens_;
  std::string_view object_;
  std::span<const FieldRecord> fields_;
  std::size_t position_ = 0;
  std::size_t conditions_ = 0;
  bool statement_ended_ = false;
  std::optional<NotExpressible> problem_;
};

}  // namespace

std::variant<NothingAsked, QueryModel, NotExpressible> ReadQuery(std::string_view text,
                                                                 std::string_view object,
                                                                 std::span<const FieldRecord> fields) {
  return Reader(text, object, fields).Read();
}

}  // namespace plovix
