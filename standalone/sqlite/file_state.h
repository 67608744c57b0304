// What stands at a database file's path: the checks before it is opened, and whether it has changed since.
// Used by the connection. A file that is there is never opened here: closing a descriptor of a file drops
// every lock that this process holds on it, also those of another connection.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace plovix {

enum class Access { kReadOnly, kReadWrite };

// SQLite keeps what a change is to be undone by, the log of a file, and the memory in which programs share
// the log's index, beside it.
inline constexpr std::string_view kJournalSuffix = "-journal";
inline constexpr std::string_view kLogSuffix = "-wal";
inline constexpr std::string_view kSharedMemorySuffix = "-shm";

// All zero where there is no file.
struct FileId {
  dev_t device = 0;
  ino_t node = 0;
  bool operator==(const FileId&) const = default;
};
[[nodiscard]] FileId FileAt(const std::string& path);

// What stands at the path of a database file, its log and its shared memory. Programs find each other by all
// three: one that sees another log or another memory writes over what the others stored.
struct FilesInPlace {
  FileId file, log, memory;
  bool has_second_name = false;  // a hard link: a program that uses it has a log and a memory of its own
};
[[nodiscard]] FilesInPlace FilesAt(const std::string& path);
// Of the file at the path; 0 where there is none.
[[nodiscard]] std::int64_t SizeOf(const std::string& path);
inline constexpr std::string_view kSecondName =
    "the file has a second name (a hard link), and programs that use it under different names overwrite "
    "each other's changes";

// Differs when another program has changed the file, or may be about to.
struct FileState {
  FileId id;
  std::int64_t size = 0;
  std::int64_t modified = 0;  // nanoseconds of the system's clock
  bool in_use = false;        // there are changes in a log or journal, or programs that share an index
  bool operator==(const FileState&) const = default;
};
[[nodiscard]] FileState StateOf(const std::string& path);

// Absolute, because ":memory:", "file:..." and the empty name mean something else to SQLite; without
// links, because the log stands beside the file itself. Fails when the path can name no file; `what` says
// what it should be, such as "task file".
[[nodiscard]] std::string RealPath(const std::string& path, std::string_view what);

// Fails in words where `path`, a RealPath, cannot be opened. For writing a file that is missing is fine.
void CheckPath(const std::string& path, Access access, std::string_view what);

// Makes an empty file for the user alone where there is none. The files beside it get its rights from SQLite.
// A failure is left to whoever opens the file.
void MakePrivateFile(const std::string& path);

}  // namespace plovix
