#include "manager_lock.h"

#include <fcntl.h>
#include <plovix/base/failure.h>
#include <plovix/standalone/sqlite/file_state.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <system_error>

namespace plovix {
namespace {

constexpr std::string_view kLockSuffix = "-lock";

constexpr std::size_t kLongestText = 80;  // bytes

// 0 if it begins with none.
std::int64_t NumberIn(std::string_view text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

[[noreturn]] void RefuseLockFile(const std::string& path, const std::string& problem) {
  throw Failure(failure_number::kFileAccess, path + ": " + problem);
}

[[noreturn]] void RefuseByReason(const std::string& path, const std::string& problem) {
  RefuseLockFile(path, problem + " (" + std::generic_category().message(errno) + ")");
}

flock ByteOf(std::int64_t number) {
  flock byte{};
  byte.l_type = F_WRLCK;
  byte.l_whence = SEEK_SET;
  byte.l_start = number;
  byte.l_len = 1;
  return byte;
}

}  // namespace

ManagerLock::File::File(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR)) {
  if (descriptor_ < 0) RefuseByReason(path, "the file that shows which managers live cannot be opened");
}

ManagerLock::File::~File() {
  close(descriptor_);
}

// A task file that was restored from a copy gives numbers once more that managers may still have.
ManagerLock::ManagerLock(SqliteRunStore& store)
    : path_(store.Path() + std::string(kLockSuffix)), file_(path_) {
  const std::string id = store.FileId() + " ", before = Text();
  const std::int64_t last = store.LastManager();
  do number_ = store.NewManager();
  while (!Lock(number_));
  if (!StillMine()) RefuseLockFile(path_, "the file was replaced at this moment; try again");
  saw_restored_ = !before.empty() && (!before.starts_with(id) || NumberIn(before.substr(id.size())) > last);
  NoteText(id + std::to_string(number_) + "\n");
}

std::string ManagerLock::Text() const {
  std::string text(kLongestText, '\0');
  const ssize_t length = pread(file_.Descriptor(), text.data(), text.size(), 0);
  text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  return text;
}

// The number in it may lag behind, which only hides that the file was restored: no reason not to start.
void ManagerLock::NoteText(const std::string& text) const {
  (void)!pwrite(file_.Descriptor(), text.data(), text.size(), 0);
}

bool ManagerLock::Lock(std::int64_t number) const {
  flock byte = ByteOf(number);
  if (fcntl(file_.Descriptor(), F_OFD_SETLK, &byte) == 0) return true;
  if (errno != EAGAIN && errno != EACCES)
    RefuseByReason(path_, "the file cannot be locked; use a local disk");
  return false;
}

bool ManagerLock::IsAlive(std::int64_t number) const {
  if (number == number_) return true;  // its own lock is in nobody's way
  flock byte = ByteOf(number);
  if (fcntl(file_.Descriptor(), F_OFD_GETLK, &byte) != 0)
    RefuseByReason(path_, "the kernel does not tell which managers live");
  return byte.l_type != F_UNLCK;
}

bool ManagerLock::StillMine() const {
  struct stat opened {};
  return fstat(file_.Descriptor(), &opened) == 0 && FileAt(path_) == FileId{opened.st_dev, opened.st_ino};
}

}  // namespace plovix
