#include "connection.h"

#include <plovix/standalone/query/sql_tokens.h>
#include <sqlite3.h>

#include <array>
#include <cerrno>
#include <limits>
#include <random>
#include <thread>
#include <utility>

#include "change_guard.h"
#include "hardening.h"
#include "shared_memory.h"

namespace plovix {
namespace {

constexpr int kPrimaryCode = 0xFF;  // the rest of an extended code says where it happened

// A running statement checks after this many steps whether its time is over.
constexpr int kStepsBetween = 100;

// Between two attempts to get a lock that another connection holds.
constexpr std::chrono::microseconds kShortestPause{100}, kLongestPause{1500};

struct FileProblem {
  int number;
  std::string text;
};

FileProblem ProblemOf(int code, const std::string& what) {
  if (code == SQLITE_READONLY_ROLLBACK) {
    return {failure_number::kFileAccess,
            "a change of the file was cut off; open it with the program that made it"};
  }
  switch (code & kPrimaryCode) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:  // others held the lock at every attempt
      return {failure_number::kPermissionDenied, "another program is using the file; try again"};
    case SQLITE_NOMEM:
      return {failure_number::kOutOfMemory, "there is not enough memory"};
    case SQLITE_READONLY:
      return {failure_number::kPermissionDenied, "the file or its folder is write-protected"};
    case SQLITE_INTERRUPT:
      return {failure_number::kInterrupted, "the statement was interrupted"};
    case SQLITE_IOERR:
      return {failure_number::kDeviceError, "the disk reports an error"};
    case SQLITE_CORRUPT:
      return {failure_number::kInvalidFormat, "the file is damaged; restore it from a copy"};
    case SQLITE_FULL:
      return {failure_number::kDiskFull, "the disk is full"};
    case SQLITE_CANTOPEN:
      return {failure_number::kFileAccess, "the file cannot be opened"};
    case SQLITE_TOOBIG:
      return {failure_number::kOverflow, "a text or other value is longer than can be used here"};
    case SQLITE_NOTADB:
      return {failure_number::kInvalidFormat, "this is not a " + what};
    default:
      return {failure_number::kInvalidCall, "the file cannot be used"};
  }
}

// No space left on the disk, in the user's quota, or below a limit.
bool MeansFull(int reason) {
  return reason == ENOSPC || reason == EDQUOT || reason == EFBIG;
}

// SQLite itself recognizes a full disk only in refused writes, and only for one of the reasons. It keeps the
// reason with the file at fault, which is already closed if it was a journal.
int CodeOf(sqlite3* database) {
  const int code = sqlite3_extended_errcode(database);
  if ((code & kPrimaryCode) != SQLITE_IOERR) return code;
  if (MeansFull(sqlite3_system_errno(database))) return SQLITE_FULL;
  for (const int which : {SQLITE_FCNTL_FILE_POINTER, SQLITE_FCNTL_JOURNAL_POINTER}) {
    sqlite3_file* file = nullptr;
    int reason = 0;
    sqlite3_file_control(database, "main", which, static_cast<void*>(&file));
    if (file == nullptr || file->pMethods == nullptr) continue;
    file->pMethods->xFileControl(file, SQLITE_FCNTL_LAST_ERRNO, &reason);
    if (MeansFull(reason)) return SQLITE_FULL;
  }
  return code;
}

// Whether the file's header says that changes go through a log. Read through the database's own descriptor.
bool KeepsLog(sqlite3* database) {
  constexpr int kReadVersionAt = 19;
  constexpr unsigned char kWithLog = 2;
  sqlite3_file* file = nullptr;
  unsigned char version = 0;
  return sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file)) ==
             SQLITE_OK &&
         file != nullptr && file->pMethods != nullptr &&
         file->pMethods->xRead(file, &version, 1, kReadVersionAt) == SQLITE_OK && version == kWithLog;
}

// SQLite appends up to this many bytes to the name of a file, for the files beside it.
constexpr std::size_t kRoomForSuffix = 8;

void CheckLength(const std::string& path) {
  const auto limit = static_cast<std::size_t>(sqlite3_vfs_find(nullptr)->mxPathname) - kRoomForSuffix;
  if (path.size() <= limit) return;
  throw Failure(failure_number::kPathNotFound, path + ": the path is longer than the " +
                                                   std::to_string(limit) +
                                                   " bytes that a database may have; use a shorter one");
}

// What happens to a change if its file is out of place.
constexpr std::string_view kNotStored = "; the change is not stored; ";
constexpr std::string_view kNotKnown = "; whether the change is stored is not known; ";

// The only way to tell SQLite that it needs no locks. Every byte with a special meaning is escaped.
std::string UnlockedName(const std::string& path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-";
  std::string name = "file://";
  for (const char character : path) {
    if (kPlain.find(character) != std::string_view::npos) {
      name += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    name += {'%', kDigits[byte >> 4U], kDigits[byte & 0x0FU]};
  }
  return name + "?immutable=1";
}

}  // namespace

void Connection::Close::operator()(sqlite3* database) const noexcept {
  sqlite3_close_v2(database);
}

Connection::Connection(const std::string& path, std::chrono::milliseconds patience, Access access,
                       std::string_view what)
    : path_(RealPath(path, what)),
      what_(what),
      patience_(patience),
      access_(access),
      pauses_(static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count())) {
  CheckLength(path_);
  CheckPath(path_, access_, what_);
  if (access_ == Access::kReadWrite) MakePrivateFile(path_);
  Open();
  files_.file = FileAt(path_);
}

// When it closes, SQLite would move a log that no longer belongs to this file, and delete whatever has its
// name.
Connection::~Connection() {
  if (files_.log == FileId{}) return;
  EmptyLog();
  if (!MayUseLog()) sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

Connection::Handle Connection::OpenAs(const std::string& name, int flags) const {
  constexpr int kAlways = SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_PRIVATECACHE | SQLITE_OPEN_EXRESCODE;
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &opened, flags | kAlways, nullptr);
  Handle handle(opened);
  if (opened == nullptr) throw std::bad_alloc();
  if (code != SQLITE_OK) Fail(opened);
  BePatient(opened);
  Harden(opened, access_);
  return handle;
}

void Connection::BePatient(sqlite3* database) const {
  auto* self = const_cast<Connection*>(this);  // NOLINT(cppcoreguidelines-pro-type-const-cast): C's way
  sqlite3_busy_handler(database, &Connection::WaitForOthers, self);
}

// The database's own way of waiting sleeps longer after each attempt, so that under steady load one writer
// keeps getting the lock and the others wait for seconds.
int Connection::WaitForOthers(void* connection, int attempts) noexcept {
  auto* self = static_cast<Connection*>(connection);
  const auto now = std::chrono::steady_clock::now();
  if (attempts == 0) self->waits_until_ = now + self->patience_;
  if (now >= self->waits_until_) return 0;
  std::uniform_int_distribution pause(kShortestPause.count(), kLongestPause.count());
  std::this_thread::sleep_for(std::chrono::microseconds(pause(self->pauses_)));
  return 1;
}

// For a file whose changes go through a log, even a reader would create the log and the shared memory, which
// it may not be allowed to, and leave them behind. As long as nobody else has the file open, it needs
// neither.
void Connection::Open() const {
  const bool reads = access_ == Access::kReadOnly;
  const FileState state = StateOf(path_);
  Handle handle = OpenAs(path_, reads ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  const bool unlocked = reads && !state.in_use && KeepsLog(handle.get());
  if (unlocked) handle = OpenAs(UnlockedName(path_), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
  handle_.swap(handle);
  unlocked_.reset();
  (void)Integer("PRAGMA schema_version");  // reads the file for the first time
  if (unlocked) unlocked_ = state;
  Watch();
}

void Connection::Watch() const {
  if (guard_) guard_->StandOn(handle_.get());
  if (!guard_) sqlite3_set_authorizer(handle_.get(), nullptr, nullptr);
  auto* self = const_cast<Connection*>(this);  // NOLINT(cppcoreguidelines-pro-type-const-cast): C's way
  sqlite3_progress_handler(handle_.get(), is_over_ ? kStepsBetween : 0, &Connection::IsOver, self);
}

void Connection::Guard(ReadGuard::MayRead may_read) {
  guard_.reset();
  Watch();
  if (!may_read) return;
  (void)Integer("SELECT count(*) FROM sqlite_master");  // what the database reads itself, unguarded
  guard_ = std::make_unique<ReadGuard>(std::move(may_read));
  Watch();
}

void Connection::WithChangeGuard(const std::function<void()>& work) {
  constexpr std::array kActs = {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW};
  const auto act = [&](int on) {
    for (const int what : kActs) sqlite3_db_config(handle_.get(), what, on, nullptr);
  };
  const auto guarded = [&](std::unique_ptr<StatementGuard> guard) {
    guard_.swap(guard);
    Watch();
  };
  act(1);
  guarded(std::make_unique<ChangeGuard>());
  const auto restore = [&] {
    guarded(nullptr);
    act(0);
  };
  try {
    work();
  } catch (...) {
    restore();
    throw;
  }
  restore();
}

std::function<bool()> Connection::StopWhen(std::function<bool()> is_over) {
  auto former = std::exchange(is_over_, std::move(is_over));
  Watch();
  return former;
}

int Connection::IsOver(void* connection) noexcept {
  return static_cast<const Connection*>(connection)->is_over_() ? 1 : 0;
}

void Connection::OpenAgainIfChanged() const {
  if (!unlocked_ || StateOf(path_) == *unlocked_) return;
  const bool is_running =
      sqlite3_next_stmt(handle_.get(), nullptr) != nullptr || sqlite3_get_autocommit(handle_.get()) == 0;
  if (is_running) CheckUnchanged();
  Open();
}

void Connection::CheckUnchanged() const {
  if (!unlocked_ || StateOf(path_) == *unlocked_) return;
  Refuse(failure_number::kFileAccess, "another program changed the file while it was read; try again");
}

void Connection::RefuseToWrite() const {
  Refuse(failure_number::kPermissionDenied, "the file is open for reading, and the statement writes");
}

// Moves what was stored before into the file if that is safe, because nobody may find the log again.
void Connection::CheckInPlace(std::string_view consequence) {
  const FilesInPlace now = FilesAt(path_);
  const bool has_log = files_.log != FileId{};
  const bool same =
      now.file == files_.file && (!has_log || (now.log == files_.log && now.memory == files_.memory));
  if (same && !now.has_second_name) return;
  EmptyLog();
  if (same) {
    Refuse(failure_number::kFileAccess,
           std::string(kSecondName) + std::string(consequence) + "remove one of the names");
  }
  RefuseOutOfPlace(consequence);
}

void Connection::RefuseOutOfPlace(std::string_view consequence) const {
  Refuse(failure_number::kFileAccess,
         "the file, or its log (-wal) or shared memory (-shm), was deleted, moved or replaced while it was "
         "open" +
             std::string(consequence) + "put it back, or end all programs that use the file and start again");
}

// Others may have started their own log, or a shared memory that disagrees with the one in use. As long as
// nothing has replaced a removed file, nobody has.
bool Connection::MayUseLog() const {
  const FilesInPlace now = FilesAt(path_);
  const bool both_gone = now.memory == FileId{} && now.log == FileId{};
  return (now.file == files_.file || now.file == FileId{}) && (now.memory == files_.memory || both_gone) &&
         (now.log == files_.log || SizeOf(path_ + std::string(kLogSuffix)) == 0);
}

bool Connection::EmptyLog() {
  if (files_.log == FileId{} || !MayUseLog()) return true;
  sqlite3_busy_timeout(handle_.get(), 0);
  const int code =
      sqlite3_wal_checkpoint_v2(handle_.get(), "main", SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
  BePatient(handle_.get());
  return code == SQLITE_OK;
}

Statement Connection::Prepare(std::string_view sql) const {
  const auto refuse = [this](const std::string& words) { throw SqlFailure(path_ + ": " + words, words, -1); };
  if (sql.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    refuse("the SQL text is too long");
  if (sql.empty()) refuse("the SQL text holds no statement");
  if (sql.find('\0') != std::string_view::npos) refuse("the SQL text holds a zero byte");
  if (StatementCount(sql) > 1) refuse("the SQL text holds more than one statement");
  OpenAgainIfChanged();
  if (guard_) (void)guard_->TakeRefusal();
  const char* tail = sql.data() + sql.size();
  sqlite3_stmt* prepared = nullptr;
  const int code =
      sqlite3_prepare_v2(handle_.get(), sql.data(), static_cast<int>(sql.size()), &prepared, &tail);
  Statement::Handle handle(prepared);
  if (code != SQLITE_OK) Fail();
  if (prepared == nullptr) refuse("the SQL text holds no statement");
  // If the database ever divided a text differently, the rest would be silently dropped.
  if (StatementCount(sql.substr(static_cast<std::size_t>(tail - sql.data()))) > 0)
    refuse("the SQL text holds more than one statement");
  return {*this, std::move(handle)};
}

void Connection::Run(std::string_view sql) const {
  Prepare(sql).Run();
}

std::optional<std::int64_t> Connection::Integer(std::string_view sql) const {
  Statement statement = Prepare(sql);
  if (!statement.Step() || statement.Type(0) == ColumnType::kNull) return std::nullopt;
  return statement.Integer(0);
}

std::optional<std::string> Connection::Text(std::string_view sql) const {
  Statement statement = Prepare(sql);
  if (!statement.Step() || statement.Type(0) == ColumnType::kNull) return std::nullopt;
  return std::string(statement.Text(0));
}

std::int64_t Connection::LastInsertId() const noexcept {
  return sqlite3_last_insert_rowid(handle_.get());
}

std::int64_t Connection::ChangedRows() const noexcept {
  return sqlite3_changes64(handle_.get());
}

void Connection::Write(const std::function<void()>& body, const std::function<bool()>& arrived) {
  CheckInPlace(kNotStored);
  // Takes the write lock first, because a transaction that reads and then writes cannot wait for it.
  Run("BEGIN IMMEDIATE");
  try {
    body();
    CheckInPlace(kNotStored);  // again, because the lock may have taken time
  } catch (...) {
    RollBack();
    throw;
  }
  Commit(arrived);
  CheckInPlace(kNotKnown);
  if (written_) written_();
}

void Connection::Commit(const std::function<bool()>& arrived) {
  try {
    Run("COMMIT");
  } catch (const Failure&) {
    RollBack();
    bool there = false;
    try {
      there = arrived();
    } catch (const Failure& unreadable) {
      Refuse(unreadable.Number(),
             "the file fell away while the change was stored; whether it is stored is not "
             "known until the file can be read again");
    }
    if (!there) throw;
  }
}

void Connection::Read(const std::function<void()>& body) {
  Run("BEGIN");
  try {
    body();
  } catch (...) {
    RollBack();
    throw;
  }
  RollBack();
}

// After some failures, such as a full disk, SQLite has already ended the transaction.
void Connection::RollBack() noexcept {
  if (sqlite3_get_autocommit(handle_.get()) != 0) return;
  sqlite3_exec(handle_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Connection::PrepareForWriting() {
  Run("PRAGMA foreign_keys = ON");
  Run("PRAGMA synchronous = FULL");
  UseWriteAheadLog();
  (void)Integer("PRAGMA schema_version");  // opens the log
  const FilesInPlace now = FilesAt(path_);
  // Another connection of this process may have opened the file before its shared memory was removed.
  int was_moved = 0;
  sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &was_moved);
  const bool whole = now.file == files_.file && now.log != FileId{} && now.memory != FileId{};
  if (was_moved != 0 || !whole || LacksPartOfLog()) {
    sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    RefuseOutOfPlace("; ");
  }
  files_ = now;
}

// True if the log was removed while a program had the file open, and a new one was created: the shared memory
// then describes the old one. Somebody else may empty the log between the two checks.
bool Connection::LacksPartOfLog() const {
  const std::int64_t told = LogBytes(handle_.get());
  const std::int64_t there = SizeOf(path_ + std::string(kLogSuffix));
  return there < told && LogBytes(handle_.get()) == told;
}

// While another program opens the same new file, the database reports it as busy without the usual waiting.
void Connection::UseWriteAheadLog() const {
  constexpr std::chrono::milliseconds kPause{10};
  const auto deadline = std::chrono::steady_clock::now() + patience_;
  while (sqlite3_exec(handle_.get(), "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr) != SQLITE_OK) {
    const int code = sqlite3_errcode(handle_.get()) & kPrimaryCode;
    if (code != SQLITE_BUSY || std::chrono::steady_clock::now() > deadline) Fail();
    std::this_thread::sleep_for(kPause);
  }
  if (Text("PRAGMA journal_mode") == "wal") return;
  Refuse(failure_number::kFileAccess, "this file system cannot keep a " + what_ + "; use a local disk");
}

void Connection::Refuse(int number, const std::string& problem) const {
  throw Failure(number, path_ + ": " + problem);
}

void Connection::Fail() const {
  Fail(handle_.get());
}

void Connection::Fail(sqlite3* database) const {
  const int code = CodeOf(database);
  const std::string words = sqlite3_errmsg(database);
  const std::string source = " (SQLite " + std::to_string(code) + ": " + words + ")";
  if (auto refused = guard_ ? guard_->TakeRefusal() : std::nullopt)
    throw SqlFailure(path_ + ": the SQL statement may not be run" + source, words, -1, std::move(refused));
  if ((code & kPrimaryCode) == SQLITE_ERROR) {
    throw SqlFailure(path_ + ": the SQL statement cannot be run" + source, words,
                     sqlite3_error_offset(database));
  }
  const FileProblem problem = ProblemOf(code, what_);
  Refuse(problem.number, problem.text + source);
}

}  // namespace plovix
