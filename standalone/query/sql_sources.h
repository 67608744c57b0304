// Which tables and views an SQL text reads from, as far as its words tell. Used to find out, before the
// database is asked, what a text would be made into.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace plovix {

// A common table expression: WITH name AS (...).
struct CommonTable {
  std::string name;
  std::vector<std::string> sources;  // those inside its brackets
};

// Names are in small letters from A to Z. Never a name too few: every place is counted at which the database
// could look for a table. A column at such a place is counted, too.
struct SqlSources {
  std::vector<std::string> all;     // one for each place
  std::vector<CommonTable> common;  // and windows: WINDOW name AS (...)
  // Brackets within brackets beyond any purpose, or a parameter that takes in brackets; the rest is not
  // listed.
  bool too_deep = false;
};

[[nodiscard]] SqlSources SourcesOf(std::string_view sql);

// The name in small letters from A to Z.
[[nodiscard]] std::string LowerName(std::string_view name);

}  // namespace plovix
