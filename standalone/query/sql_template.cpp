#include "sql_template.h"

#include <algorithm>
#include <array>
#include <utility>

#include "sql_tokens.h"

namespace plovix {
namespace {

// They reach other files, change the connection, or end the transaction in which the statement runs.
constexpr auto kForbiddenFirst =
    std::to_array<std::string_view>({"ATTACH", "BEGIN", "COMMIT", "DETACH", "END", "EXPLAIN", "PRAGMA",
                                     "RELEASE", "ROLLBACK", "SAVEPOINT", "VACUUM"});
constexpr std::string_view kLoadsCode = "LOAD_EXTENSION";

bool BeginsWithDigit(std::string_view text) {
  return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

class StatementParser {
 public:
  explicit StatementParser(std::string_view text) : pieces_(ParseText(text)) {}

  Parsed<SqlTemplate> Parse() {
    for (const TextPiece& piece : pieces_.value) Append(piece);
    tokens_ = SqlTokens(parsed_.value.sql);
    parsed_.problem = pieces_.problem ? std::move(pieces_.problem) : FindProblem();
    return std::move(parsed_);
  }

 private:
  void Append(const TextPiece& piece) {
    std::string& sql = parsed_.value.sql;
    // Digits that follow a parameter would be its number.
    const bool is_text = piece.kind == TextPiece::Kind::kText;
    if (is_text && sql.ends_with('?') && !parsed_.value.parameters.empty() && BeginsWithDigit(piece.text))
      sql += ' ';
    begins_.push_back(sql.size());
    if (is_text) {
      sql += piece.text;
    } else {
      sql += '?';
      parsed_.value.parameters.push_back(piece);
    }
  }

  std::optional<TextProblem> FindProblem() {
    for (const SqlToken& token : tokens_) {
      if (token.kind == SqlToken::Kind::kUnreadable) return At(token, "action.problem.sqlUnreadable");
    }
    for (std::size_t i = 0; i < pieces_.value.size(); ++i) {
      const TextPiece& piece = pieces_.value[i];
      if (piece.kind != TextPiece::Kind::kText && !IsParameter(begins_[i]))
        return TextProblem{piece.offset, piece.length, "action.problem.sqlPlace", {}};
    }
    if (auto problem = FindOwnParameter()) return problem;
    return FindForbidden();
  }

  // Whether the database sees a parameter there.
  [[nodiscard]] bool IsParameter(std::size_t offset) const {
    const auto found = std::ranges::lower_bound(tokens_, offset, {}, &SqlToken::offset);
    return found != tokens_.end() && found->offset == offset && found->IsSign("?");
  }

  [[nodiscard]] std::optional<TextProblem> FindOwnParameter() const {
    std::size_t given = 0;  // placeholders so far; each is a parameter
    for (const SqlToken& token : tokens_) {
      const bool is_named = token.IsSign(":") || token.IsSign("@") || token.IsSign("$");
      const bool is_ours = token.IsSign("?") && given < parsed_.value.parameters.size() &&
                           PlaceOf(token.offset) == parsed_.value.parameters[given].offset;
      if (is_ours) ++given;
      if (is_named || (token.IsSign("?") && !is_ours)) return At(token, "action.problem.sqlParameter");
    }
    return std::nullopt;
  }

  [[nodiscard]] std::optional<TextProblem> FindForbidden() const {
    std::size_t statements = 0;
    bool is_inside = false;
    for (std::size_t i = 0; i + 1 < tokens_.size(); ++i) {
      const SqlToken& token = tokens_[i];
      const bool is_first = !is_inside && !token.IsSign(";");
      is_inside = !token.IsSign(";");
      if (is_first && ++statements > 1) return At(token, "action.problem.sqlCount");
      const bool is_forbidden =
          is_first && std::ranges::any_of(kForbiddenFirst, [&](auto word) { return token.Is(word); });
      const bool loads_code =
          SqlToken{SqlToken::Kind::kWord, token.text}.Is(kLoadsCode) && tokens_[i + 1].IsSign("(");
      if (is_forbidden || loads_code) return At(token, "action.problem.sqlForbidden", token.text);
    }
    if (statements == 0) return TextProblem{0, 0, "action.problem.sqlCount", {}};
    return std::nullopt;
  }

  // Where that place of the SQL stands in the text that was parsed.
  [[nodiscard]] std::size_t PlaceOf(std::size_t offset) const {
    const auto after = std::ranges::upper_bound(begins_, offset);
    if (after == begins_.begin()) return 0;
    const auto piece = static_cast<std::size_t>(after - begins_.begin()) - 1;
    const bool is_text = pieces_.value[piece].kind == TextPiece::Kind::kText;
    return pieces_.value[piece].offset + (is_text ? offset - begins_[piece] : 0);
  }

  [[nodiscard]] TextProblem At(const SqlToken& token, std::string_view text,
                               std::string parameter = {}) const {
    const std::size_t begin = PlaceOf(token.offset);
    const std::size_t last = PlaceOf(token.offset + std::max<std::size_t>(token.length, 1) - 1);
    return {begin, last + 1 - begin, text, std::move(parameter)};
  }

  Parsed<TextTemplate> pieces_;
  std::vector<std::size_t> begins_;  // of each piece in the SQL
  std::vector<SqlToken> tokens_;
  Parsed<SqlTemplate> parsed_;
};

}  // namespace

Parsed<SqlTemplate> ParseStatement(std::string_view text) {
  return StatementParser(text).Parse();
}

std::vector<FieldValue> ParametersOf(const SqlTemplate& statement, const RecordValues& record,
                                     const Secrets& secrets) {
  std::vector<FieldValue> values;
  for (const TextPiece& parameter : statement.parameters)
    values.push_back(ValueOf(parameter, record, secrets));
  return values;
}

std::optional<ActionProblem> CheckStatementToo(const ActionRecord& action,
                                               const std::vector<FieldRecord>* fields) {
  if (auto problem = CheckAction(action, fields)) return problem;
  const ActionKind* kind = FindActionKind(action.kind);
  if (kind == nullptr) return std::nullopt;
  for (const ActionField& field : kind->fields) {
    if (field.placeholders != Placeholders::kStatement) continue;
    const auto parsed = ParseStatement(action.settings.at(std::string(field.key)));
    if (const auto& problem = parsed.problem)
      return ActionProblem{field.key, problem->text, problem->parameter, problem->offset, problem->length};
  }
  return std::nullopt;
}

}  // namespace plovix
