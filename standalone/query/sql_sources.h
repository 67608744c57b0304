// Which tables and views an SQL text reads, as far as its words show. Used to estimate how a text would
// expand before the database sees it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace plovix {

// A common table expression: WITH name AS (...).
struct CommonTable {
  std::string name;
  std::vector<std::string> sources;  // the sources inside its brackets
};

// Names are in lower case (A to Z only). No name is missing: every place at which the database could look for
// a table counts. A column at such a place counts, too.
struct SqlSources {
  std::vector<std::string> all;     // one for each place
  std::vector<CommonTable> common;  // and windows: WINDOW name AS (...)
  // Brackets are nested unreasonably deep, or a parameter swallows brackets; the rest is not listed.
  bool too_deep = false;
};

[[nodiscard]] SqlSources SourcesOf(std::string_view sql);

// The name in lower case (A to Z only).
[[nodiscard]] std::string LowerName(std::string_view name);

}  // namespace plovix
