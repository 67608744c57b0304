// What every database handle is given before it does anything: a file may come from anywhere, and so may the
// SQL that is run on it. Used by the connection.
#pragma once

#include "file_state.h"

struct sqlite3;

namespace plovix {

// Turns off what the program never needs of a file's schema (triggers, trusted functions, for writing also
// views) and of SQL (other files, extensions, foreign tokenizers), and sets the limits on texts, values and
// memory. docs/data.md names those that a user can meet.
void Harden(sqlite3* database, Access access);

}  // namespace plovix
