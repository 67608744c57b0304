#include "record_query.h"

#include <plovix/base/same_name.h>
#include <plovix/standalone/query/query_text.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace plovix {
namespace {

// In the order of preference.
constexpr auto kChangeNames = std::to_array<std::string_view>(
    {"changed", "changed_at", "changed_on", "modified", "modified_at", "modified_on", "updated", "updated_at",
     "updated_on", "last_changed", "last_modified", "last_updated"});

bool CanTellTime(FieldType type) {
  return type == FieldType::kDateTime || type == FieldType::kDate || type == FieldType::kText;
}

std::string WithoutEnd(std::string query) {
  const std::size_t last = query.find_last_not_of(" \t\r\n;");
  query.resize(last == std::string::npos ? 0 : last + 1);
  return query;
}

// Qualified, because the database would take a quoted name that the query lacks for a text.
std::string SelectThose(const std::string& columns, const DataObjectRecord& object,
                        const std::string& query) {
  const std::string key = QuotedName(object.key), text = WithoutEnd(query);
  const std::string all = "SELECT o." + key + columns + " FROM " + QuotedName(object.name) + " AS o";
  const std::string those =
      text.empty() ? "" : " WHERE o." + key + " IN (SELECT q." + key + " FROM (" + text + "\n) AS q)";
  return all + those + " ORDER BY 1";
}

}  // namespace

std::string KeysStatement(const DataObjectRecord& object, const std::string& query) {
  return SelectThose("", object, query);
}

std::string RecordsStatement(const DataObjectRecord& object, const std::string& query) {
  return SelectThose(", o.*", object, query);
}

std::string RecordStatement(const DataObjectRecord& object) {
  return "SELECT * FROM " + QuotedName(object.name) + " AS o WHERE o." + QuotedName(object.key) + " = ?";
}

std::optional<std::string> ChangeFieldOf(std::span<const FieldRecord> fields) {
  for (const std::string_view name : kChangeNames) {
    const auto found = std::ranges::find_if(fields, [name](const FieldRecord& field) {
      return SameName(field.name, name) && CanTellTime(field.type);
    });
    if (found != fields.end()) return found->name;
  }
  return std::nullopt;
}

}  // namespace plovix
