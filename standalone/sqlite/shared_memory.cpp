#include "shared_memory.h"

#include <sqlite3.h>

namespace plovix {

// Follows SQLite's documented layout of the memory and the log; uses the mapping that the database has
// anyway.
std::int64_t LogBytes(sqlite3* database) {
  constexpr int kRegionBytes = 32768, kPageSizeAt = 14, kFramesAt = 16;
  constexpr std::int64_t kLogHeader = 32, kFrameHeader = 24, kPageSizeOne = 65536;
  sqlite3_file* file = nullptr;
  volatile void* memory = nullptr;
  sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file));
  if (file == nullptr || file->pMethods == nullptr || file->pMethods->iVersion < 2) return 0;
  if (file->pMethods->xShmMap(file, 0, kRegionBytes, 0, &memory) != SQLITE_OK || memory == nullptr) return 0;
  const auto* const halves = static_cast<volatile const std::uint16_t*>(memory);
  const auto* const words = static_cast<volatile const std::uint32_t*>(memory);
  const std::int64_t page = halves[kPageSizeAt / sizeof(*halves)];
  const std::int64_t frames = words[kFramesAt / sizeof(*words)];
  return frames == 0 ? 0 : kLogHeader + frames * (kFrameHeader + (page == 1 ? kPageSizeOne : page));
}

}  // namespace plovix
