// Writes a query model as SQL: as text that a person reads and edits, and as a statement with values to bind.
// Used by the query builder and to run queries.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "query_model.h"

namespace plovix {

using BoundValue = std::variant<std::int64_t, double, std::string>;

struct BoundQuery {
  std::string sql;                 // with "?" for each value
  std::vector<BoundValue> values;  // in the same order
};

// Both quote every name and every value, so that nothing typed becomes SQL. `fields` are those of the model's
// data object; other fields are treated as text.
[[nodiscard]] std::string QueryText(const QueryModel& model, std::span<const FieldRecord> fields);
[[nodiscard]] BoundQuery BindQuery(const QueryModel& model, std::span<const FieldRecord> fields);

// A name as a quoted identifier.
[[nodiscard]] std::string QuotedName(std::string_view name);

}  // namespace plovix
