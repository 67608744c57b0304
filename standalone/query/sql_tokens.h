// The words and signs of an SQL text, as SQLite divides it. Used by the query's reader, and by connections,
// which take one statement at a time.
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
    kNumber,      // without sign, as it stands
    kSign,        // an operator or one of other characters
    kUnreadable,  // unended quotes, a zero byte, "12ab", "$a(b)"; the last token
    kEnd
  };
  Kind kind = Kind::kEnd;
  std::string text;  // without its quotes
  char quote = 0;    // of a kName: '"', '[' or '`'
  // Whether this is the keyword, given in capitals.
  [[nodiscard]] bool Is(std::string_view keyword) const;
  [[nodiscard]] bool IsSign(std::string_view sign) const { return kind == Kind::kSign && text == sign; }
};

// Whether a parameter with brackets, "$a(b)", is in the text; nothing behind it can be told.
[[nodiscard]] bool HidesItsRest(const SqlToken& token);

// Without blanks and comments; always ends with kEnd.
[[nodiscard]] std::vector<SqlToken> SqlTokens(std::string_view sql);

// Statements are divided by semicolons; blanks and comments alone are none.
[[nodiscard]] std::size_t StatementCount(std::string_view sql);

// A keyword that can only be a name in quotes.
[[nodiscard]] bool IsReserved(const SqlToken& token);

}  // namespace plovix
