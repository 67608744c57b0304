// The records of a data object on which a task works, as rows that a person can edit: "all records", or
// groups of conditions. Shared by the query's writer, its reader and the query builder.
#pragma once

#include <plovix/standalone/tasks/data_source.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

enum class Join { kAll, kAny };

enum class Comparison {
  kEquals,
  kDiffers,
  kLess,
  kAtMost,
  kGreater,
  kAtLeast,
  kContains,
  kBeginsWith,
  kEndsWith,
  kIsEmpty,
  kIsNotEmpty
};

struct Condition {
  std::string field;
  Comparison comparison = Comparison::kEquals;
  // In the notation of the field's type, independent of the user's language: "-12", "0.5", "1" or "0" for yes
  // or no, "2026-01-05", "2026-01-05 08:00:00"; empty if the comparison takes no value.
  std::string value;
  bool operator==(const Condition&) const = default;
};

struct Group {
  Join inner = Join::kAll;  // without meaning for a single condition
  std::vector<Condition> conditions;
  bool operator==(const Group&) const = default;
};

struct QueryModel {
  std::string object;
  Join outer = Join::kAll;    // without meaning for a single group
  std::vector<Group> groups;  // none, or none with a condition: all records
  bool operator==(const QueryModel&) const = default;
};

// nullptr if there is no field of that name.
[[nodiscard]] const FieldRecord* FindField(std::span<const FieldRecord> fields, std::string_view name);

// The comparisons that make sense for a field, in the order in which they are offered; at least one.
[[nodiscard]] std::span<const Comparison> ComparisonsFor(FieldType type);
[[nodiscard]] bool TakesValue(Comparison comparison);
// Whether it compares with a pattern: contains, begins with, ends with.
[[nodiscard]] bool IsPattern(Comparison comparison);
// Whether the values of such a field are numbers in SQL.
[[nodiscard]] bool IsNumeric(FieldType type);

// What is wrong with a condition on a field of that type, as the key of a host text; nothing if it is valid.
[[nodiscard]] std::optional<std::string_view> CheckCondition(const Condition& condition, FieldType type);

}  // namespace plovix
