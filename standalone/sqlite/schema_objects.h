// What a database's schema holds, so that one can be told from another. Used by whoever must know that a file
// has the tables that its own statements make, and nothing that acts behind their back.
#pragma once

#include <set>
#include <span>
#include <string>

#include "connection.h"

namespace plovix {

// A table, view, trigger or index.
struct SchemaObject {
  std::string type, name;
  std::string sql;  // that made it, without blanks
  auto operator<=>(const SchemaObject&) const = default;
};

// Without what SQLite keeps for itself: the indexes of keys, counters, statistics.
[[nodiscard]] std::set<SchemaObject> SchemaObjects(const Connection& connection);
// The same of a database in memory that the statements have made; they must be right.
[[nodiscard]] std::set<SchemaObject> SchemaObjectsMadeBy(
    std::span<const std::span<const char* const>> statements);

}  // namespace plovix
