// One connection to a database file: opening it carefully, statements, transactions, and failures in words.
// Used by everything that stores something in such a file, or reads one.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "file_state.h"
#include "read_guard.h"
#include "sql_failure.h"
#include "statement.h"

struct sqlite3;

namespace plovix {

// Every member fails with a Failure that names the file and says what a person can do about it; it is a
// SqlFailure if the statement is at fault. A connection belongs to one thread at a time.
//
// A connection for reading needs no write permission for the file or its folder, runs no statement that
// writes, and leaves nothing beside the file except the shared memory of a log that another program has left.
// While nobody else has the file open, it reads the file without locks: if another program changes it during
// a pass, that pass fails, and the next Prepare sees the change, or fails as well while older statements
// exist. So do not keep statements for reading.
class Connection final {
 public:
  // Opens the file; for writing, creates a missing file, empty and readable only by the user. `patience` is
  // how long a statement waits for other programs; `what` is what failures call the file.
  Connection(const std::string& path, std::chrono::milliseconds patience, Access access,
             std::string_view what = "database");
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Absolute and without links.
  [[nodiscard]] const std::string& Path() const noexcept { return path_; }
  [[nodiscard]] std::chrono::milliseconds Patience() const noexcept { return patience_; }

  // `sql` must be one statement; nothing in a text with several is prepared, because preparing can already
  // have effects.
  [[nodiscard]] Statement Prepare(std::string_view sql) const;
  void Run(std::string_view sql) const;
  // The first column of the statement's first row; nothing if there is no row, or NULL in it.
  [[nodiscard]] std::optional<std::int64_t> Integer(std::string_view sql) const;
  [[nodiscard]] std::optional<std::string> Text(std::string_view sql) const;
  // Returns the id of the row that was inserted last.
  [[nodiscard]] std::int64_t LastInsertId() const noexcept;
  [[nodiscard]] std::int64_t ChangedRows() const noexcept;

  // Runs `body` in one transaction, all or nothing. If the commit fails, `arrived` is called to find out
  // whether the change is in the file nevertheless, because a commit may report a failure that came too late
  // to stop it. A change that other programs might not find, or might overwrite, because the file, its log or
  // its shared memory is no longer the one that was opened, is not acknowledged.
  void Write(const std::function<void()>& body, const std::function<bool()>& arrived);
  // Runs `body` on one consistent state of the file, whatever other programs write meanwhile.
  void Read(const std::function<void()>& body);

  // From now on statements, except those of this class, may only read what `may_read` allows; if it is empty,
  // they may do anything.
  void Guard(ReadGuard::MayRead may_read);
  // Runs `work`, whose statements may change data but nothing outside the file and nothing of Plovix's own.
  // The file's own triggers and views act, under the same guard. To be called within Write.
  void WithChangeGuard(const std::function<void()>& work);
  // From now on statements fail with 18 once `is_over` returns true; it is called regularly while they run,
  // but not during a single call of an SQL function, however long. An empty one never stops them. Returns the
  // former one.
  std::function<bool()> StopWhen(std::function<bool()> is_over);

  // Prepares the file for writing: changes go through a log, and each one to disk.
  void PrepareForWriting();
  // Moves the log's contents into the file, without waiting for anybody, so that a copy of the file alone is
  // complete. False if other programs or the disk prevented it; then it can be tried again.
  bool EmptyLog();
  // `told` is called after every change that Write has stored.
  void OnWritten(std::function<void()> told) { written_ = std::move(told); }

  [[noreturn]] void Refuse(int number, const std::string& problem) const;

 private:
  friend class Statement;
  struct Close {
    void operator()(sqlite3* database) const noexcept;
  };
  using Handle = std::unique_ptr<sqlite3, Close>;

  [[nodiscard]] Handle OpenAs(const std::string& name, int flags) const;
  void BePatient(sqlite3* database) const;
  void Open() const;
  void OpenAgainIfChanged() const;
  void CheckUnchanged() const;
  void CheckInPlace(std::string_view consequence);
  [[noreturn]] void RefuseOutOfPlace(std::string_view consequence) const;
  [[nodiscard]] bool MayUseLog() const;
  [[nodiscard]] bool LacksPartOfLog() const;
  [[noreturn]] void RefuseToWrite() const;
  void Watch() const;
  void UseWriteAheadLog() const;
  void RollBack() noexcept;
  void Commit(const std::function<bool()>& arrived);
  // Throws the failure of the database's last call.
  [[noreturn]] void Fail() const;
  [[noreturn]] void Fail(sqlite3* database) const;

  static int IsOver(void* connection) noexcept;
  static int WaitForOthers(void* connection, int attempts) noexcept;

  std::string path_, what_;
  std::chrono::milliseconds patience_;
  Access access_;
  std::unique_ptr<StatementGuard> guard_;  // outlives the handle
  std::function<bool()> is_over_;
  std::chrono::steady_clock::time_point waits_until_;
  std::minstd_rand pauses_;  // differ from connection to connection
  mutable Handle handle_;
  mutable std::optional<FileState> unlocked_;  // the state of a file that is read without locks
  FilesInPlace files_;                         // as opened; no log before PrepareForWriting
  std::function<void()> written_;
};

}  // namespace plovix
