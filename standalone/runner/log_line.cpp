#include "log_line.h"

#include <fcntl.h>
#include <plovix/base/failure.h>
#include <sys/stat.h>

#include "descriptor.h"

namespace plovix::runner {
namespace {

[[noreturn]] void RefuseLine(const std::string& path, const std::string& words) {
  throw Failure(failure_number::kInvalidCall, path + ": the line cannot be written: " + words);
}

}  // namespace

// Opening does not wait for the reader of a pipe, and whoever may write the folder cannot lead elsewhere by a
// link.
void AppendLogLine(const std::string& path, std::string_view line) {
  constexpr int kHow = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  if (!path.starts_with('/')) RefuseLine(path, "the path is not absolute, it must begin with \"/\"");
  const Descriptor file(open(path.c_str(), kHow, 0600));
  if (!file.IsOpen() && errno == ELOOP) RefuseLine(path, "it is a link; give the path of the file itself");
  if (!file.IsOpen() && errno == ENOENT) RefuseLine(path, "its folder does not exist");
  if (!file.IsOpen()) RefuseLine(path, errno == ENXIO ? "it is no ordinary file" : SystemWords(errno));
  struct stat status {};
  if (fstat(file.Get(), &status) != 0) RefuseLine(path, SystemWords(errno));
  if (!S_ISREG(status.st_mode)) RefuseLine(path, "it is no ordinary file");
  const std::string whole = std::string(line) + "\n";
  ssize_t written = 0;
  do {
    written = write(file.Get(), whole.data(), whole.size());
  } while (written < 0 && errno == EINTR);
  if (written < 0) RefuseLine(path, SystemWords(errno));
  if (static_cast<std::size_t>(written) < whole.size())
    RefuseLine(path, "the disk is full; part of the line is in the file");
}

}  // namespace plovix::runner
