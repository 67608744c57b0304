// The tables of a task file, and how a file of any earlier version gets them. Used by the storage.
#pragma once

#include <plovix/standalone/sqlite/connection.h>

#include <span>

namespace plovix {

// SQL statements that lead from one schema version to the next.
using MigrationStep = std::span<const char* const>;

// Step N leads from version N to N + 1; version 0 is the empty file. A released step never changes: a
// new version appends one.
[[nodiscard]] std::span<const MigrationStep> MigrationSteps();

// The file's schema version, 0 for an empty file. Fails on a file that is not a task file, on one of a
// version later than `latest`, and on one whose tables are not those of its version; the file is only read.
[[nodiscard]] int SchemaVersion(Connection& connection, int latest);

// Brings the file to the version that all `steps` lead to, in one transaction.
void Migrate(Connection& connection, std::span<const MigrationStep> steps);

}  // namespace plovix
