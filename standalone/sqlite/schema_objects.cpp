#include "schema_objects.h"

#include <sqlite3.h>

#include <memory>

namespace plovix {
namespace {

// Blanks do not count, because a differently formatted program source must not make a file differ.
constexpr const char* kSelect =
    "SELECT type, name, replace(replace(coalesce(sql, ''), ' ', ''), char(10), '') FROM sqlite_master "
    "WHERE NOT (type = 'index' AND sql IS NULL) "
    "AND name NOT IN ('sqlite_sequence', 'sqlite_stat1', 'sqlite_stat4')";

int Add(void* objects, int /*columns*/, char** values, char** /*names*/) {
  static_cast<std::set<SchemaObject>*>(objects)->insert({values[0], values[1], values[2]});
  return 0;
}

}  // namespace

std::set<SchemaObject> SchemaObjects(const Connection& connection) {
  std::set<SchemaObject> objects;
  connection.Prepare(kSelect).ForEachRow([&](const Statement& row) {
    objects.insert({std::string(row.Text(0)), std::string(row.Text(1)), std::string(row.Text(2))});
  });
  return objects;
}

std::set<SchemaObject> SchemaObjectsMadeBy(std::span<const std::span<const char* const>> statements) {
  sqlite3* opened = nullptr;
  sqlite3_open(":memory:", &opened);
  const std::unique_ptr<sqlite3, int (*)(sqlite3*)> memory(opened, sqlite3_close_v2);
  std::set<SchemaObject> objects;
  for (const std::span<const char* const> step : statements) {
    for (const char* statement : step) sqlite3_exec(opened, statement, nullptr, nullptr, nullptr);
  }
  sqlite3_exec(opened, kSelect, Add, &objects, nullptr);
  return objects;
}

}  // namespace plovix
