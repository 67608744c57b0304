// The tables of a task file, and the upgrade of earlier versions. Used by the storage.
#pragma once

#include <plovix/standalone/sqlite/connection.h>

#include <span>

namespace plovix {

// SQL statements that upgrade one schema version to the next.
using MigrationStep = std::span<const char* const>;

// Step N upgrades version N to N + 1; version 0 is the empty file. A released step never changes; a new
// version appends one.
[[nodiscard]] std::span<const MigrationStep> MigrationSteps();

// The file's schema version, 0 for an empty file. Fails on a file that is not a task file, on one of a
// version later than `latest`, and on one whose tables are not those of its version; the file is only read.
[[nodiscard]] int SchemaVersion(Connection& connection, int latest);

// Upgrades the file to the version after all `steps`, in one transaction.
void Migrate(Connection& connection, std::span<const MigrationStep> steps);

}  // namespace plovix
