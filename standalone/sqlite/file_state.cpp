#include "file_state.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "sql_failure.h"

namespace plovix {
namespace {

namespace fs = std::filesystem;

// Checks the effective rights, which count when the file is opened.
bool MayUse(const fs::path& path, int mode) {
  return faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
}

}  // namespace

std::int64_t SizeOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_size : 0;
}

FileId FileAt(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

FilesInPlace FilesAt(const std::string& path) {
  struct stat status {};
  const bool exists = stat(path.c_str(), &status) == 0;
  return {.file = exists ? FileId{status.st_dev, status.st_ino} : FileId{},
          .log = FileAt(path + std::string(kLogSuffix)),
          .memory = FileAt(path + std::string(kSharedMemorySuffix)),
          .has_second_name = exists && status.st_nlink > 1};
}

FileState StateOf(const std::string& path) {
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return {};
  const bool in_use = SizeOf(path + std::string(kLogSuffix)) != 0 ||
                      FileAt(path + std::string(kSharedMemorySuffix)) != FileId{} ||
                      FileAt(path + std::string(kJournalSuffix)) != FileId{};
  return {.id = {status.st_dev, status.st_ino},
          .size = status.st_size,
          .modified = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec,
          .in_use = in_use};
}

std::string RealPath(const std::string& path, std::string_view what) {
  if (path.empty() || path.find('\0') != std::string::npos) {
    throw Failure(failure_number::kPathNotFound,
                  "The " + std::string(what) + "'s name is empty or holds a zero byte");
  }
  std::error_code error;
  const fs::path real = fs::weakly_canonical(fs::absolute(path, error), error);
  return error ? path : real.string();
}

void CheckPath(const std::string& name, Access access, std::string_view what) {
  const auto refuse = [&name](int number, const std::string& problem) {
    throw Failure(number, name + ": " + problem);
  };
  const fs::path path(name);
  const bool writes = access == Access::kReadWrite;
  std::error_code error;
  const fs::path folder = path.parent_path();
  const bool is_folder = fs::is_directory(folder, error);
  if (error == std::errc::filename_too_long) refuse(failure_number::kPathNotFound, "the path is too long");
  if (!is_folder) refuse(failure_number::kPathNotFound, "the folder does not exist");
  if (!MayUse(folder, X_OK)) refuse(failure_number::kPermissionDenied, "you may not look into the folder");
  if (writes && !MayUse(folder, W_OK)) {
    refuse(failure_number::kPermissionDenied, "you may not write into the folder, where changes are logged");
  }
  // SQLite would open a pipe and wait for somebody at its other end.
  for (const std::string_view suffix : {kJournalSuffix, kLogSuffix, kSharedMemorySuffix}) {
    const fs::file_status beside = fs::status(fs::path(path) += suffix, error);
    if (fs::exists(beside) && !fs::is_regular_file(beside))
      refuse(failure_number::kFileAccess,
             "what stands beside it as " + std::string(suffix) + " is no ordinary file");
  }
  const fs::file_status status = fs::status(path, error);
  if (error == std::errc::filename_too_long) refuse(failure_number::kPathNotFound, "the name is too long");
  if (!fs::exists(status)) {
    if (!writes) refuse(failure_number::kFileNotFound, "the file does not exist");
    return;
  }
  if (fs::is_directory(status)) {
    refuse(failure_number::kFileAccess, "this is a folder, not a " + std::string(what));
  }
  if (!fs::is_regular_file(status)) refuse(failure_number::kFileAccess, "this is no ordinary file");
  if (writes && fs::hard_link_count(path, error) > 1 && !error) {
    refuse(failure_number::kFileAccess, std::string(kSecondName) + "; remove one of the names");
  }
  if (!MayUse(path, R_OK)) refuse(failure_number::kPermissionDenied, "you may not read the file");
  if (writes && !MayUse(path, W_OK)) {
    refuse(failure_number::kPermissionDenied, "the file is write-protected");
  }
}

void MakePrivateFile(const std::string& path) {
  constexpr mode_t kUserAlone = 0600;
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kUserAlone);
  if (file >= 0) close(file);
}

}  // namespace plovix
