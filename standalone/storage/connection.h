// One connection to a task file: opening it with care, statements, transactions, and what went wrong in
// words. Used by the storage and the schema.
#pragma once

#include <plovix/controls/failure.h>
#include <sys/types.h>

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace plovix {

// Failures of files, by their customary numbers.
namespace failure_number {
inline constexpr int kDeviceError = 57;
inline constexpr int kDiskFull = 61;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kFileAccess = 75;
inline constexpr int kPathNotFound = 76;
inline constexpr int kInvalidFormat = 321;
}  // namespace failure_number

// SQLite keeps the log of a file beside it.
inline constexpr std::string_view kLogSuffix = "-wal";

enum class Access { kReadOnly, kReadWrite };

// Every member fails with a Failure that names the file and says what a person can do about it.
class Connection {
 public:
  // Opens the file, or creates it empty. `patience` is how long a statement waits for other programs.
  Connection(const std::string& path, std::chrono::milliseconds patience, Access access);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  [[nodiscard]] QSqlQuery Prepare(std::string_view sql) const;
  // Runs a prepared statement whose values are bound.
  void Run(QSqlQuery& statement) const;
  void Run(std::string_view sql) const;
  // The first column of the statement's first row; not valid when there is no row.
  [[nodiscard]] QVariant Value(std::string_view sql) const;
  // Runs a prepared statement and gives each row to `row`. However it ends, the statement then holds on
  // to no state of the file.
  void ForEachRow(QSqlQuery& statement, const std::function<void(const QSqlQuery&)>& row) const;

  // Runs `body` in one transaction, all or nothing. When committing fails, `arrived` is asked whether
  // the change is in the file nevertheless: a commit may report a failure that came too late to stop it.
  void Write(const std::function<void()>& body, const std::function<bool()>& arrived);
  // Runs `body` on one state of the file, whatever other programs write meanwhile.
  void Read(const std::function<void()>& body);

  // Settles what the file must be for writing: changes go through a log, each one to the disk.
  void PrepareForWriting();
  // Fails when the file or its log is no longer the one that is open: what is written would vanish.
  void CheckInPlace() const;

  [[noreturn]] void Refuse(int number, const std::string& problem) const;
  [[noreturn]] void Fail(const QSqlError& error) const;

 private:
  // Takes the connection back from the toolkit's registry when opening fails, too.
  struct Registered {
    Registered();
    ~Registered();
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;
    QString name;
    QSqlDatabase database;
  };
  struct FileId {
    dev_t device = 0;
    ino_t node = 0;
    bool operator==(const FileId&) const = default;
  };

  void CheckPath() const;
  [[nodiscard]] static FileId FileAt(const std::string& path);
  void UseWriteAheadLog() const;
  void RollBack() noexcept;
  void Commit(const std::function<bool()>& arrived);

  std::string path_;
  std::chrono::milliseconds patience_;
  Registered registered_;
  FileId file_;
  FileId log_;  // while there is none, nothing has been written to it
};

}  // namespace plovix
