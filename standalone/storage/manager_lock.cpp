#include "manager_lock.h"

#include <fcntl.h>
#include <plovix/base/failure.h>
#include <plovix/standalone/sqlite/file_state.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <system_error>

namespace plovix {
namespace {

constexpr std::string_view kLockSuffix = "-lock";

constexpr std::size_t kLongestNote = 80;  // bytes

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

flock WholeByte(std::int64_t byte) {
  flock whole{};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  whole.l_start = byte;
  whole.l_len = 1;
  return whole;
}

std::string AccountName() {
  const passwd* user = getpwuid(geteuid());
  return user != nullptr ? user->pw_name : std::to_string(geteuid());
}

ManagerRecord ThisManager(std::int64_t number, ManagerKind kind) {
  return {.number = number,
          .kind = kind,
          .host = HostName(),
          .account = AccountName(),
          .process = getpid(),
          .since = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now())};
}

}  // namespace

LockFile::LockFile(const std::string& task_file)
    : path_(task_file + std::string(kLockSuffix)),
      descriptor_(open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR)) {
  if (descriptor_ < 0) RefuseByReason(path_, "the file that shows which managers live cannot be opened");
}

LockFile::~LockFile() {
  close(descriptor_);
}

bool LockFile::Lock(std::int64_t byte) const {
  flock whole = WholeByte(byte);
  if (fcntl(descriptor_, F_OFD_SETLK, &whole) == 0) return true;
  if (errno != EAGAIN && errno != EACCES)
    RefuseByReason(path_, "the file cannot be locked; use a local disk");
  return false;
}

bool LockFile::IsLocked(std::int64_t byte) const {
  flock whole = WholeByte(byte);
  if (fcntl(descriptor_, F_OFD_GETLK, &whole) != 0)
    RefuseByReason(path_, "the kernel does not tell which managers live");
  return whole.l_type != F_UNLCK;
}

bool LockFile::IsInPlace() const {
  struct stat opened {};
  return fstat(descriptor_, &opened) == 0 && FileAt(path_) == FileId{opened.st_dev, opened.st_ino};
}

// A task file that was restored from a copy gives numbers once more that managers may still have. Rows are
// written only by those who have their lock, so one without a lock is dead.
ManagerLock::ManagerLock(SqliteRunStore& store, ManagerKind kind) : store_(store), file_(store.Path()) {
  const std::string id = store.FileId() + " ", before = file_.Text();
  const std::int64_t last = store.LastManager();
  do number_ = store.NewManager();
  while (!file_.Lock(number_));
  if (!StillMine()) RefuseLockFile(Path(), "the file was replaced at this moment; try again");
  saw_restored_ = !before.empty() && (!before.starts_with(id) || NumberIn(before.substr(id.size())) > last);
  file_.NoteText(id + std::to_string(number_) + "\n");
  std::vector<std::int64_t> dead;
  for (const ManagerRecord& manager : store.Managers())
    if (!IsAlive(manager.number)) dead.push_back(manager.number);
  store.ChangeManagers(ThisManager(number_, kind), dead);
  is_listed_ = true;
}

std::string LockFile::Text() const {
  std::string text(kLongestNote, '\0');
  const ssize_t length = pread(descriptor_, text.data(), text.size(), 0);
  text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  return text;
}

// The number in it may lag behind, which only hides that the file was restored: no reason not to start.
void LockFile::NoteText(const std::string& text) const {
  (void)!pwrite(descriptor_, text.data(), text.size(), 0);
}

// A row that stays is that of a dead one.
ManagerLock::~ManagerLock() {
  (void)FailureOf([this] { Leave(); });
}

void ManagerLock::Leave() {
  if (is_listed_) store_.ChangeManagers({}, {number_});
  is_listed_ = false;
}

bool ManagerLock::IsAlive(std::int64_t number) const {
  return number == number_ || file_.IsLocked(number);  // its own lock is in nobody's way
}

std::vector<ManagerRecord> LivingManagers(SqliteRunStore& store) {
  std::vector<ManagerRecord> managers = store.Managers();
  if (managers.empty()) return managers;
  const LockFile file(store.Path());
  std::erase_if(managers, [&](const ManagerRecord& manager) { return !file.IsLocked(manager.number); });
  return managers;
}

std::string HostName() {
  std::array<char, HOST_NAME_MAX + 1> name{};
  return gethostname(name.data(), name.size()) == 0 ? name.data() : "";
}

}  // namespace plovix
