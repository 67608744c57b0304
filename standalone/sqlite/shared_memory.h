// Reads the memory in which programs share the index of a file's log. Used by the connection.
#pragma once

#include <cstdint>

struct sqlite3;

namespace plovix {

// The minimum size in bytes of the log that the memory describes; 0 if there is no such memory.
[[nodiscard]] std::int64_t LogBytes(sqlite3* database);

}  // namespace plovix
