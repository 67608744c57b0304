// The settings of every database handle before it does anything, because a file may come from anywhere, and
// so may the SQL that is run on it. Used by the connection.
#pragma once

#include "file_state.h"

struct sqlite3;

namespace plovix {

// Turns off what the program never needs in a file's schema (triggers, trusted functions, for writing also
// views) and in SQL (other files, extensions, foreign tokenizers), and limits texts, values and memory.
// docs/data.md lists the limits that a user can reach.
void Harden(sqlite3* database, Access access);

}  // namespace plovix
