// The primary key of a table, from the statement that created it. Used by the catalogue, because asking the
// database for the keys of all tables takes time proportional to the square of their number.
#pragma once

#include <string>
#include <string_view>

namespace plovix {

// `sql` is a CREATE TABLE statement as the database stores it. Returns the key's column, spelled as declared;
// empty if the table has no key, or one of several columns.
[[nodiscard]] std::string SinglePrimaryKey(std::string_view sql);

}  // namespace plovix
