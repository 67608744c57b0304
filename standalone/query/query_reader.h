// Reads an SQL text back into a query model, if it can be expressed as one. Used by the query builder.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "query_model.h"

namespace plovix {

// More conditions than anybody edits as rows.
inline constexpr std::size_t kMostConditions = 200;

// Why rows cannot show a text, which may well be a valid query.
struct NotExpressible {
  std::string_view reason;  // key of a host text, a sentence
  std::string detail;       // its first parameter: the word or name concerned; may be empty
  bool operator==(const NotExpressible&) const = default;
};

// Only blanks and comments: no query yet.
struct NothingAsked {
  bool operator==(const NothingAsked&) const = default;
};

// The model means the same as the text does to the database, and each of its conditions passes
// CheckCondition. `fields` are those of the data object `object`.
[[nodiscard]] std::variant<NothingAsked, QueryModel, NotExpressible> ReadQuery(
    std::string_view text, std::string_view object, std::span<const FieldRecord> fields);

}  // namespace plovix
