#include "sql_tokens.h"

#include <algorithm>
#include <array>
#include <optional>

namespace plovix {
namespace {

constexpr auto kReserved = std::to_array<std::string_view>({"ADD",          "ALL",
                                                            "ALTER",        "AND",
                                                            "AS",           "AUTOINCREMENT",
                                                            "BETWEEN",      "CASE",
                                                            "CHECK",        "COLLATE",
                                                            "COMMIT",       "CONSTRAINT",
                                                            "CREATE",       "CURRENT_DATE",
                                                            "CURRENT_TIME", "CURRENT_TIMESTAMP",
                                                            "DEFAULT",      "DEFERRABLE",
                                                            "DELETE",       "DISTINCT",
                                                            "DROP",         "ELSE",
                                                            "ESCAPE",       "EXCEPT",
                                                            "EXISTS",       "FOREIGN",
                                                            "FROM",         "GROUP",
                                                            "HAVING",       "IN",
                                                            "INDEX",        "INSERT",
                                                            "INTERSECT",    "INTO",
                                                            "IS",           "ISNULL",
                                                            "JOIN",         "LIMIT",
                                                            "NOT",          "NOTHING",
                                                            "NOTNULL",      "NULL",
                                                            "ON",           "OR",
                                                            "ORDER",        "PRIMARY",
                                                            "RAISE",        "REFERENCES",
                                                            "RETURNING",    "SELECT",
                                                            "SET",          "TABLE",
                                                            "THEN",         "TO",
                                                            "TRANSACTION",  "UNION",
                                                            "UNIQUE",       "UPDATE",
                                                            "USING",        "VALUES",
                                                            "WHEN",         "WHERE"});

constexpr auto kDoubleSigns =
    std::to_array<std::string_view>({"==", "<>", "!=", "<=", ">=", "||", "<<", ">>"});

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}
bool IsBlank(char character) {
  return std::string_view(" \t\n\f\r").find(character) != std::string_view::npos;
}
// A blank only after another blank.
bool IsFurtherBlank(char character) {
  return IsBlank(character) || character == '\v';
}
bool StartsWord(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         character == '_' || static_cast<unsigned char>(character) >= 0x80U;
}
bool IsInWord(char character) {
  return StartsWord(character) || IsDigit(character) || character == '$';
}
char Upper(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

std::optional<unsigned> HexDigit(char character) {
  const char upper = Upper(character);
  if (IsDigit(upper)) return static_cast<unsigned>(upper - '0');
  if (upper >= 'A' && upper <= 'F') return static_cast<unsigned>(upper - 'A') + 10U;
  return std::nullopt;
}

bool IsHexDigit(char character) {
  return HexDigit(character).has_value();
}

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // a blank where a word could begin

class Scanner {
 public:
  explicit Scanner(std::string_view sql) : size_(sql.size()), rest_(sql) {}

  SqlToken Next() {
    SkipBlanks();
    const std::size_t offset = size_ - rest_.size();
    SqlToken token = Read();
    token.offset = offset;
    token.length = size_ - rest_.size() - offset;
    return token;
  }

 private:
  SqlToken Read() {
    if (rest_.empty()) return {};
    const char first = rest_.front();
    if (first == '\'') return InQuotes(SqlToken::Kind::kText, '\'');
    if (first == '"' || first == '`' || first == '[')
      return InQuotes(SqlToken::Kind::kName, first == '[' ? ']' : first);
    if (Upper(first) == 'X' && rest_.substr(1).starts_with('\'')) return Bytes();
    if (StartsWord(first)) return {SqlToken::Kind::kWord, Take(LengthWhile(0, IsInWord))};
    if (IsDigit(first) || (first == '.' && rest_.size() > 1 && IsDigit(rest_[1]))) return Number();
    return Sign();
  }

  std::string Take(std::size_t length) {
    std::string taken(rest_.substr(0, length));
    rest_.remove_prefix(std::min(length, rest_.size()));
    return taken;
  }

  // The number of characters of a class from `start` on.
  std::size_t LengthWhile(std::size_t start, bool (*is)(char)) const {
    while (start < rest_.size() && is(rest_[start])) ++start;
    return start;
  }

  SqlToken Unreadable() { return {SqlToken::Kind::kUnreadable, Take(rest_.size())}; }

  // An unterminated comment goes to the end of the text.
  void SkipBlanks() {
    while (true) {
      if (!rest_.empty() && IsBlank(rest_.front())) {
        Take(LengthWhile(1, IsFurtherBlank));
      } else if (rest_.starts_with(kByteOrderMark)) {
        Take(kByteOrderMark.size());
      } else if (rest_.starts_with("--")) {
        Take(std::min(rest_.find('\n'), rest_.size()));
      } else if (rest_.starts_with("/*") && rest_.size() > 2) {
        const std::size_t end = rest_.find("*/", 2);
        Take(end == std::string_view::npos ? rest_.size() : end + 2);
      } else {
        return;
      }
    }
  }

  // Quotes can be doubled inside; a bracket cannot.
  SqlToken InQuotes(SqlToken::Kind kind, char quote) {
    SqlToken token{kind, {}, rest_.front()};
    for (std::size_t at = 1; at < rest_.size() && rest_[at] != '\0'; ++at) {
      if (rest_[at] == quote) {
        const bool doubled = quote != ']' && at + 1 < rest_.size() && rest_[at + 1] == quote;
        if (!doubled) {
          Take(at + 1);
          return token;
        }
        ++at;
      }
      token.text += rest_[at];
    }
    return Unreadable();
  }

  SqlToken Bytes() {
    SqlToken token{SqlToken::Kind::kBytes, {}};
    std::size_t at = 2;
    for (; at + 1 < rest_.size() && rest_[at] != '\''; at += 2) {
      const auto high = HexDigit(rest_[at]);
      const auto low = HexDigit(rest_[at + 1]);
      if (!high || !low) return Unreadable();
      token.text += static_cast<char>(*high * 16U + *low);
    }
    if (at >= rest_.size() || rest_[at] != '\'') return Unreadable();
    Take(at + 1);
    return token;
  }

  SqlToken Number() {
    if (rest_.size() > 2 && rest_[0] == '0' && Upper(rest_[1]) == 'X' && IsHexDigit(rest_[2]))
      return NumberOf(LengthWhile(2, IsHexDigit));
    std::size_t length = LengthWhile(0, IsDigit);
    if (length < rest_.size() && rest_[length] == '.') length = LengthWhile(length + 1, IsDigit);
    if (length < rest_.size() && Upper(rest_[length]) == 'E') {
      std::size_t exponent = length + 1;
      if (exponent < rest_.size() && (rest_[exponent] == '+' || rest_[exponent] == '-')) ++exponent;
      if (exponent < rest_.size() && IsDigit(rest_[exponent])) length = LengthWhile(exponent, IsDigit);
    }
    return NumberOf(length);
  }

  SqlToken NumberOf(std::size_t length) {
    if (length < rest_.size() && IsInWord(rest_[length])) return Unreadable();
    return {SqlToken::Kind::kNumber, Take(length)};
  }

  // A parameter includes brackets that directly follow its name, whatever they contain.
  [[nodiscard]] bool IsParameterWithBrackets() const {
    if (std::string_view("$@#:").find(rest_.front()) == std::string_view::npos) return false;
    std::size_t length = LengthWhile(1, IsInWord);
    while (rest_.substr(length).starts_with("::")) length = LengthWhile(length + 2, IsInWord);
    return length > 1 && rest_.substr(length).starts_with("(");
  }

  SqlToken Sign() {
    for (const std::string_view sign : kDoubleSigns) {
      if (rest_.starts_with(sign)) return {SqlToken::Kind::kSign, Take(sign.size())};
    }
    if (rest_.front() == '\0' || rest_.front() == '\v' || IsParameterWithBrackets()) return Unreadable();
    return {SqlToken::Kind::kSign, Take(1)};
  }

  std::size_t size_;
  std::string_view rest_;
};

}  // namespace

bool SqlToken::Is(std::string_view keyword) const {
  return kind == Kind::kWord && std::ranges::equal(text, keyword, {}, Upper);
}

bool HidesItsRest(const SqlToken& token) {
  return token.kind == SqlToken::Kind::kUnreadable &&
         std::string_view("$@#:").find(token.text.front()) != std::string_view::npos;
}

std::vector<SqlToken> SqlTokens(std::string_view sql) {
  Scanner scanner(sql);
  std::vector<SqlToken> tokens;
  do {
    tokens.push_back(scanner.Next());
  } while (tokens.back().kind != SqlToken::Kind::kEnd);
  return tokens;
}

std::size_t StatementCount(std::string_view sql) {
  std::size_t count = 0;
  bool is_inside = false;
  Scanner scanner(sql);
  for (SqlToken token = scanner.Next(); token.kind != SqlToken::Kind::kEnd; token = scanner.Next()) {
    const bool is_in_statement = !token.IsSign(";");
    if (is_in_statement && !is_inside) ++count;
    is_inside = is_in_statement;
  }
  return count;
}

bool IsReserved(const SqlToken& token) {
  return std::ranges::any_of(kReserved, [&token](std::string_view word) { return token.Is(word); });
}

}  // namespace plovix
