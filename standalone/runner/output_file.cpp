#include "output_file.h"

#include <fcntl.h>
#include <plovix/base/failure.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

namespace plovix::runner {
namespace {

[[noreturn]] void RefuseOutput(const std::string& path, const std::string& words) {
  throw Failure(failure_number::kInvalidCall, path + ": the output cannot be kept: " + words);
}

}  // namespace

std::string OutputFolder(const std::string& task_file) {
  std::error_code error;
  return std::filesystem::weakly_canonical(task_file, error).string() + "-logs";
}

std::string OutputPath(const std::string& folder, std::int64_t run) {
  return folder + "/run-" + std::to_string(run) + ".log";
}

OutputFile::OutputFile(const std::string& path) {
  constexpr int kHow = O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  constexpr mode_t kPrivate = 0600;
  file_ = Descriptor(open(path.c_str(), kHow, kPrivate));
  if (!file_.IsOpen()) RefuseOutput(path, errno == ELOOP ? "it is a link" : SystemWords(errno));
  struct stat status {};
  if (fstat(file_.Get(), &status) != 0) RefuseOutput(path, SystemWords(errno));
  if (!S_ISREG(status.st_mode)) RefuseOutput(path, "it is no ordinary file");
  if (status.st_uid != geteuid()) RefuseOutput(path, "it belongs to another user");
  if (fchmod(file_.Get(), kPrivate) != 0 || ftruncate(file_.Get(), 0) != 0)
    RefuseOutput(path, SystemWords(errno));
}

void OutputFile::Add(std::string_view bytes) {
  const std::size_t count = std::min(bytes.size(), kFirstOutput - first_);
  if (count > 0) Write(bytes.substr(0, count), first_);
  first_ += count;
  bytes.remove_prefix(count);
  if (bytes.empty()) return;
  const std::size_t before = last_.size();
  last_ += bytes;
  if (left_out_ == 0 && last_.size() <= kLastOutput) return Write(bytes, first_ + before);
  stale_ = true;
  const std::size_t unused = last_.size() > 2 * kLastOutput ? last_.size() - kLastOutput : 0;
  last_.erase(0, unused);
  left_out_ += static_cast<std::int64_t>(unused);
}

void OutputFile::Refresh() {
  if (!stale_) return;
  const std::size_t unused = std::max(last_.size(), kLastOutput) - kLastOutput;
  last_.erase(0, unused);
  left_out_ += static_cast<std::int64_t>(unused);
  const std::string middle = "\n[... " + std::to_string(left_out_) + " bytes left out ...]\n";
  Write(middle + last_, first_);
  if (ftruncate(file_.Get(), static_cast<off_t>(first_ + middle.size() + last_.size())) != 0)
    problem_ = SystemWords(errno);
  stale_ = false;
}

// After a failure the program goes on, and so does the counting.
void OutputFile::Write(std::string_view bytes, std::size_t offset) {
  while (!bytes.empty()) {
    const ssize_t written = pwrite(file_.Get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      problem_ = SystemWords(errno);
      return;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
    offset += static_cast<std::size_t>(written);
  }
}

}  // namespace plovix::runner
