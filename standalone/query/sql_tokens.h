// The tokens of an SQL text, as SQLite separates them. Used by the query's reader, and by connections, which
// accept one statement at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

struct SqlToken {
  enum class Kind {
    kWord,        // a keyword, or a name without quotes
    kName,        // a name in double quotes, brackets or backquotes
    kText,        // a value in single quotes
    kBytes,       // x'00ff': the bytes
    kNumber,      // without sign, as written
    kSign,        // an operator or another character
    kUnreadable,  // unterminated quotes, a zero byte, "12ab", "$a(b)"; the last token
    kEnd
  };
  Kind kind = Kind::kEnd;
  std::string text;                    // without its quotes
  char quote = 0;                      // of a kName: '"', '[' or '`'
  std::size_t offset = 0, length = 0;  // where it stands in the SQL text, with its quotes, in bytes
  // Whether this is the keyword, which is given in capitals.
  [[nodiscard]] bool Is(std::string_view keyword) const;
  [[nodiscard]] bool IsSign(std::string_view sign) const { return kind == Kind::kSign && text == sign; }
};

// Whether this is a parameter with brackets, "$a(b)"; nothing after it can be recognized.
[[nodiscard]] bool HidesItsRest(const SqlToken& token);

// The tokens without blanks and comments; always ends with kEnd.
[[nodiscard]] std::vector<SqlToken> SqlTokens(std::string_view sql);

// Statements are separated by semicolons; blanks and comments alone do not count.
[[nodiscard]] std::size_t StatementCount(std::string_view sql);

// A keyword that can only be a name in quotes.
[[nodiscard]] bool IsReserved(const SqlToken& token);

}  // namespace plovix
