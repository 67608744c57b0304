// The primary key of a table, from the statement that made it. Used by the catalogue: asking the database for
// the keys of all tables takes time in the square of their number.
#pragma once

#include <string>
#include <string_view>

namespace plovix {

// `sql` is a CREATE TABLE statement as the database keeps it. The key's column, spelled as it was declared;
// empty when the table has none, or one of several columns.
[[nodiscard]] std::string SinglePrimaryKey(std::string_view sql);

}  // namespace plovix
