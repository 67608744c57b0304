#include "ordinary_file.h"

#include <fcntl.h>
#include <plovix/base/failure.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

namespace plovix {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;

class Reading {
 public:
  // Without waiting, because opening a pipe waits until somebody opens its other end.
  Reading(const std::string& path, const TextTable& texts)
      : path_(path),
        texts_(texts),
        descriptor_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)) {
    if (descriptor_ < 0) RefuseByCode();
  }
  ~Reading() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Reading(const Reading&) = delete;
  Reading& operator=(const Reading&) = delete;

  [[nodiscard]] std::string AtMost(std::size_t most) const {
    struct stat status {};
    if (fstat(descriptor_, &status) != 0) RefuseByCode();
    if (S_ISDIR(status.st_mode)) Refuse("error.fileFolder");
    if (!S_ISREG(status.st_mode)) Refuse("error.fileSpecial");
    std::string bytes;
    // Does not rely on the file's size: a file may grow, and virtual files of the system have none.
    std::array<char, kMegabyte / 16> block{};
    while (true) {
      const ssize_t count = read(descriptor_, block.data(), std::min(block.size(), most + 1 - bytes.size()));
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) RefuseByCode();
      if (count == 0) return bytes;
      bytes.append(block.data(), static_cast<std::size_t>(count));
      if (bytes.size() > most) Refuse("error.fileTooLarge", std::to_string(most / kMegabyte));
    }
  }

 private:
  [[noreturn]] void Refuse(std::string_view text, std::string further = {}) const {
    throw Failure(failure_number::kInvalidCall, texts_.Host(text, {path_, std::move(further)}));
  }
  [[noreturn]] void RefuseByCode() const {
    const int code = errno;
    if (code == ENOENT || code == ENOTDIR) Refuse("error.fileMissing");
    if (code == EACCES || code == EPERM) Refuse("error.fileForbidden");
    if (code == ENXIO) Refuse("error.fileSpecial");  // a socket
    Refuse("error.fileUnreadable", std::generic_category().message(code));
  }

  const std::string& path_;
  const TextTable& texts_;
  int descriptor_;
};

}  // namespace

std::string ReadOrdinaryFile(const std::string& path, std::size_t most, const TextTable& texts) {
  return Reading(path, texts).AtMost(most);
}

}  // namespace plovix
