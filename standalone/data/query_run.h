// Runs a query on a user's SQLite file: how many records it finds, and the first of them. Statements that
// would change anything are not run. Used by the query preview.
#pragma once

#include <plovix/standalone/query/query_text.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace plovix {

struct QueryTarget {
  std::string path;           // the data's file
  bool reads_hidden = false;  // may read what is for administrators only, too
};

struct QueryRows {
  std::vector<std::string> columns;
  // The first records. A value is cut after kLongestValue bytes; bytes that are not text are written as
  // x'...'; NULL is nothing.
  std::vector<std::vector<std::optional<std::string>>> rows;
  std::vector<std::string> keys;  // of each of the rows, as KeyOf; only where QueryLimits::keys asks for it
  std::int64_t count = 0;
  bool complete = true;  // false: time ran out, and there may be more
};

// Why there is nothing to show.
struct QueryProblem {
  std::string_view text;  // key of a host text
  std::string detail;     // its parameter: the database's own words, or what happened to the file
};

struct QueryLimits {
  std::chrono::milliseconds time{2000};     // for everything; then the count so far is shown
  std::chrono::milliseconds patience{250};  // for another program that writes
  std::size_t rows = 20;
  bool keys = false;  // the first column is the record's key, and not shown
};
inline constexpr std::size_t kLongestValue = 400;

// Runs a text only if it is one statement that reads what it may. Returns soon after the time is over or the
// result is unwanted, except if an SQL function computes without end, so call it where nobody waits.
[[nodiscard]] std::variant<QueryRows, QueryProblem> RunQuery(const QueryTarget& target,
                                                             const BoundQuery& query,
                                                             const QueryLimits& limits = {},
                                                             const std::stop_token& unwanted = {});

// Why the text cannot be run as a query, without running it.
[[nodiscard]] std::optional<QueryProblem> CheckQuery(const QueryTarget& target, std::string_view sql,
                                                     const std::stop_token& unwanted = {});

}  // namespace plovix
