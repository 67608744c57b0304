// What the memory says in which programs share the index of a file's log. Used by the connection.
#pragma once

#include <cstdint>

struct sqlite3;

namespace plovix {

// How many bytes the log has at least that the memory tells of; 0 where there is no such memory.
[[nodiscard]] std::int64_t LogBytes(sqlite3* database);

}  // namespace plovix
