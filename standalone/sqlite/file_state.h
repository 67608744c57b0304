// What is at a database file's path: the checks before it is opened, and whether it has changed since. Used
// by the connection. An existing file is never opened here, because closing a descriptor of a file drops
// every lock that this process holds on it, even those of another connection.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace plovix {

enum class Access { kReadOnly, kReadWrite };

// Beside a file, SQLite keeps the journal for undoing a change, the log, and the memory in which programs
// share the log's index.
inline constexpr std::string_view kJournalSuffix = "-journal";
inline constexpr std::string_view kLogSuffix = "-wal";
inline constexpr std::string_view kSharedMemorySuffix = "-shm";

// All zero if there is no file.
struct FileId {
  dev_t device = 0;
  ino_t node = 0;
  bool operator==(const FileId&) const = default;
};
[[nodiscard]] FileId FileAt(const std::string& path);

// What is at the paths of a database file, its log and its shared memory. Programs find each other by all
// three: a program that sees a different log or memory overwrites what the others stored.
struct FilesInPlace {
  FileId file, log, memory;
  bool has_second_name = false;  // a hard link: a program that uses it has its own log and memory
};
[[nodiscard]] FilesInPlace FilesAt(const std::string& path);
// The size of the file at the path; 0 if there is none.
[[nodiscard]] std::int64_t SizeOf(const std::string& path);
inline constexpr std::string_view kSecondName =
    "the file has a second name (a hard link), and programs that use it under different names overwrite "
    "each other's changes";

// Differs if another program has changed the file, or may be about to.
struct FileState {
  FileId id;
  std::int64_t size = 0;
  std::int64_t modified = 0;  // nanoseconds of the system's clock
  bool in_use = false;        // a log or journal has changes, or programs share an index
  bool operator==(const FileState&) const = default;
};
[[nodiscard]] FileState StateOf(const std::string& path);

// Absolute, because ":memory:", "file:..." and the empty name mean something else to SQLite; without links,
// because the log is beside the file itself. Fails if the path cannot name a file; `what` says what it should
// be, such as "task file".
[[nodiscard]] std::string RealPath(const std::string& path, std::string_view what);

// Fails with a message if `path`, a RealPath, cannot be opened. For writing, a missing file is accepted.
void CheckPath(const std::string& path, Access access, std::string_view what);

// Creates an empty file, readable only by the user, if there is none. SQLite gives its mode to the files
// beside it. A failure shows when the file is opened.
void MakePrivateFile(const std::string& path);

}  // namespace plovix
