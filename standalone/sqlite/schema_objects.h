// The contents of a database's schema, for comparison. Used to make sure that a file has the tables that the
// program's statements create, and nothing that acts behind their back.
#pragma once

#include <set>
#include <span>
#include <string>

#include "connection.h"

namespace plovix {

// A table, view, trigger or index.
struct SchemaObject {
  std::string type, name;
  std::string sql;  // the statement that created it, without blanks
  auto operator<=>(const SchemaObject&) const = default;
};

// Without SQLite's internal objects: the indexes of keys, counters, statistics.
[[nodiscard]] std::set<SchemaObject> SchemaObjects(const Connection& connection);
// The same for a database in memory, created by the statements, which must be correct.
[[nodiscard]] std::set<SchemaObject> SchemaObjectsMadeBy(
    std::span<const std::span<const char* const>> statements);

}  // namespace plovix
