#include "connection.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <thread>

namespace plovix {
namespace {

namespace fs = std::filesystem;

// SQLite's primary result codes that have a cause a person can act on.
enum ResultCode : int {
  kBusy = 5,
  kLocked = 6,
  kReadOnlyFile = 8,
  kInputOutput = 10,
  kCorrupt = 11,
  kFull = 13,
  kCannotOpen = 14,
  kNoDatabase = 26,
};

// The low byte; the rest of an extended code tells where it happened.
int PrimaryCode(const QSqlError& error) {
  return error.nativeErrorCode().toInt() & 0xFF;
}

struct Problem {
  int number;
  const char* text;
};

Problem ProblemOf(int code) {
  switch (code) {
    case kBusy:
    case kLocked:
      return {failure_number::kPermissionDenied, "another program is using the file; try again"};
    case kReadOnlyFile:
      return {failure_number::kPermissionDenied, "the file or its folder is write-protected"};
    case kInputOutput:
      return {failure_number::kDeviceError, "the disk reports an error"};
    case kCorrupt:
      return {failure_number::kInvalidFormat, "the file is damaged; restore it from a copy"};
    case kFull:
      return {failure_number::kDiskFull, "the disk is full"};
    case kCannotOpen:
      return {failure_number::kFileAccess, "the file cannot be opened"};
    case kNoDatabase:
      return {failure_number::kInvalidFormat, "this is not a task file"};
    default:
      return {failure_number::kInvalidCall, "the file cannot be used"};
  }
}

// Effective rights: what opening the file will be judged by.
bool MayUse(const fs::path& path, int mode) {
  return faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
}

QString Text(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// Absolute, because ":memory:", "file:..." and the empty name mean something else to SQLite; without
// links, because the log stands beside the file itself.
std::string RealPath(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) {
    throw Failure(failure_number::kPathNotFound, "The task file's name is empty or holds a zero byte");
  }
  std::error_code error;
  const fs::path real = fs::weakly_canonical(fs::absolute(path, error), error);
  return error ? path : real.string();
}

// Ends a statement on leaving its scope.
class Finishing {
 public:
  explicit Finishing(QSqlQuery& statement) : statement_(statement) {}
  ~Finishing() { statement_.finish(); }
  Finishing(const Finishing&) = delete;
  Finishing& operator=(const Finishing&) = delete;

 private:
  QSqlQuery& statement_;
};

}  // namespace

Connection::Registered::Registered() {
  static std::atomic<unsigned> count{0};
  name = QStringLiteral("plovix-tasks-%1").arg(++count);
  database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
}

Connection::Registered::~Registered() {
  database.close();
  database = QSqlDatabase();
  QSqlDatabase::removeDatabase(name);
}

Connection::Connection(const std::string& path, std::chrono::milliseconds patience, Access access)
    : path_(RealPath(path)), patience_(patience) {
  QSqlDatabase& database = registered_.database;
  if (!database.isValid()) {
    Refuse(failure_number::kCannotCreateObject, "the database driver QSQLITE of Qt 6 is not installed");
  }
  CheckPath();
  database.setDatabaseName(Text(path_));
  QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(patience.count());
  if (access == Access::kReadOnly) options += QStringLiteral(";QSQLITE_OPEN_READONLY");
  database.setConnectOptions(options);
  if (!database.open()) Fail(database.lastError());
  // SQLite opens the file at the first use.
  (void)Value("PRAGMA schema_version");
  file_ = FileAt(path_);
}

// The file is looked at but never opened here: closing a descriptor of a file drops every lock that this
// process holds on it, also those of another connection.
void Connection::CheckPath() const {
  const fs::path path(path_);
  std::error_code error;
  if (Text(path_).toUtf8().toStdString() != path_) {
    Refuse(failure_number::kFileAccess, "the file's name is no UTF-8 text; rename it");
  }
  const fs::path folder = path.parent_path();
  if (!fs::is_directory(folder, error)) Refuse(failure_number::kPathNotFound, "the folder does not exist");
  if (!MayUse(folder, W_OK | X_OK)) {
    Refuse(failure_number::kPermissionDenied, "you may not write into the folder, where changes are logged");
  }
  const fs::file_status status = fs::status(path, error);
  if (!fs::exists(status)) return;
  if (fs::is_directory(status)) Refuse(failure_number::kFileAccess, "this is a folder, not a task file");
  if (!fs::is_regular_file(status)) Refuse(failure_number::kFileAccess, "this is no ordinary file");
  if (!MayUse(path, R_OK)) Refuse(failure_number::kPermissionDenied, "you may not read the file");
  if (!MayUse(path, W_OK)) Refuse(failure_number::kPermissionDenied, "the file is write-protected");
}

Connection::FileId Connection::FileAt(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino};
}

void Connection::CheckInPlace() const {
  if (FileAt(path_) == file_ && (log_ == FileId{} || FileAt(path_ + std::string(kLogSuffix)) == log_)) return;
  Refuse(
      failure_number::kFileAccess,
      "the file or its log was deleted, moved or replaced while it was open, and the change is not stored; "
      "put it back, or start the program again");
}

QSqlQuery Connection::Prepare(std::string_view sql) const {
  QSqlQuery query(registered_.database);
  query.setForwardOnly(true);
  if (!query.prepare(Text(sql))) Fail(query.lastError());
  return query;
}

void Connection::Run(QSqlQuery& statement) const {
  if (!statement.exec()) Fail(statement.lastError());
}

void Connection::Run(std::string_view sql) const {
  QSqlQuery query = Prepare(sql);
  Run(query);
}

QVariant Connection::Value(std::string_view sql) const {
  QSqlQuery query = Prepare(sql);
  QVariant value;
  ForEachRow(query, [&value](const QSqlQuery& row) {
    if (!value.isValid()) value = row.value(0);
  });
  return value;
}

void Connection::ForEachRow(QSqlQuery& statement, const std::function<void(const QSqlQuery&)>& row) const {
  const Finishing finishing(statement);
  Run(statement);
  while (statement.next()) row(statement);
  if (statement.lastError().isValid()) Fail(statement.lastError());
}

void Connection::Write(const std::function<void()>& body, const std::function<bool()>& arrived) {
  CheckInPlace();
  // Takes the write lock first: a transaction that reads and then writes cannot wait for it.
  Run("BEGIN IMMEDIATE");
  try {
    body();
  } catch (...) {
    RollBack();
    throw;
  }
  Commit(arrived);
  CheckInPlace();
}

void Connection::Commit(const std::function<bool()>& arrived) {
  QSqlQuery commit(registered_.database);
  if (commit.exec(QStringLiteral("COMMIT"))) return;
  const QSqlError error = commit.lastError();
  RollBack();
  bool there = false;
  try {
    there = arrived();
  } catch (const Failure& unreadable) {
    Refuse(unreadable.Number(),
           "the file fell away while the change was stored; whether it is stored is not "
           "known until the file can be read again");
  }
  if (!there) Fail(error);
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

// SQLite has ended the transaction by itself after some failures, a full disk among them. Qt does not
// tell; rolling back once more fails then and changes nothing.
void Connection::RollBack() noexcept {
  QSqlQuery(registered_.database).exec(QStringLiteral("ROLLBACK"));
}

void Connection::PrepareForWriting() {
  Run("PRAGMA foreign_keys = ON");
  Run("PRAGMA synchronous = FULL");
  UseWriteAheadLog();
  (void)Value("PRAGMA schema_version");  // opens the log
  log_ = FileAt(path_ + std::string(kLogSuffix));
}

// Another program that opens the same new file holds this up without the usual waiting.
void Connection::UseWriteAheadLog() const {
  constexpr std::chrono::milliseconds kPause{10};
  const auto deadline = std::chrono::steady_clock::now() + patience_;
  while (true) {
    QSqlQuery query(registered_.database);
    if (query.exec(QStringLiteral("PRAGMA journal_mode = WAL"))) {
      if (query.next() && query.value(0).toString() == QStringLiteral("wal")) return;
      Refuse(failure_number::kFileAccess, "this file system cannot keep a task file; use a local disk");
    }
    const QSqlError error = query.lastError();
    if (PrimaryCode(error) != kBusy || std::chrono::steady_clock::now() > deadline) Fail(error);
    std::this_thread::sleep_for(kPause);
  }
}

void Connection::Refuse(int number, const std::string& problem) const {
  throw Failure(number, path_ + ": " + problem);
}

void Connection::Fail(const QSqlError& error) const {
  const Problem problem = ProblemOf(PrimaryCode(error));
  Refuse(problem.number, std::string(problem.text) + " (SQLite " + error.nativeErrorCode().toStdString() +
                             ": " + error.databaseText().toStdString() + ")");
}

}  // namespace plovix
