// Opening a task file. Used by the storage and that of users and tags, which share the file and not the
// connection.
#pragma once

#include <plovix/standalone/sqlite/connection.h>

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace plovix {

// The name of the file in failures.
inline constexpr std::string_view kTaskFile = "task file";
// How long to wait for another program that is writing.
inline constexpr std::chrono::milliseconds kTaskFilePatience{3000};

// tasks.sqlite in the folder "plovix" of the user's data folder.
[[nodiscard]] std::string DefaultDatabasePath();

// Opens or creates the file with all its tables, for writing; the folder is created only for the default
// path. Fails, and changes nothing, if the file is not a task file or was created by a newer program.
[[nodiscard]] std::unique_ptr<Connection> OpenTaskFile(const std::string& path,
                                                       std::chrono::milliseconds patience);

}  // namespace plovix
