#include "file_place.h"

#include <sys/stat.h>
#include <sys/statfs.h>

#include <bit>
#include <cstdint>

namespace plovix {

std::string FilePlace(const std::string& path) {
  struct stat file {};
  struct statfs system {};
  if (stat(path.c_str(), &file) != 0 || statfs(path.c_str(), &system) != 0) return {};
  return std::to_string(std::bit_cast<std::uint64_t>(system.f_fsid)) + ":" + std::to_string(file.st_ino);
}

}  // namespace plovix
