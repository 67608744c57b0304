// One connection to a database file: opening it with care, statements, transactions, and what went wrong in
// words. Used by whatever keeps something in such a file, or reads one.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "file_state.h"
#include "read_guard.h"
#include "sql_failure.h"
#include "statement.h"

struct sqlite3;

namespace plovix {

// Every member fails with a Failure that names the file and says what a person can do about it; it is a
// SqlFailure where the statement is at fault. A connection belongs to one thread at a time.
//
// A connection for reading needs no right to write the file or into its folder, runs no statement that
// writes, and leaves nothing beside the file, except the shared memory of a log that another program has
// left. While nobody else has the file open, it reads it without locks: what another program changes in
// the middle of a pass makes that pass fail, and the next Prepare sees the change, or fails in its turn while
// older statements exist. So do not keep statements for reading.
class Connection final {
 public:
  // Opens the file; for writing, creates it empty, for the user alone, where it is missing. `patience` is how
  // long a statement waits for other programs; `what` is what failures call the file.
  Connection(const std::string& path, std::chrono::milliseconds patience, Access access,
             std::string_view what = "database");
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Absolute and without links.
  [[nodiscard]] const std::string& Path() const noexcept { return path_; }
  [[nodiscard]] std::chrono::milliseconds Patience() const noexcept { return patience_; }

  // `sql` must be one statement: of a text with more of them nothing is prepared, as preparing can act
  // already.
  [[nodiscard]] Statement Prepare(std::string_view sql) const;
  void Run(std::string_view sql) const;
  // The first column of the statement's first row; nothing when there is no row, or NULL in it.
  [[nodiscard]] std::optional<std::int64_t> Integer(std::string_view sql) const;
  [[nodiscard]] std::optional<std::string> Text(std::string_view sql) const;
  // Of the last statement that changed something.
  [[nodiscard]] std::int64_t LastInsertId() const noexcept;
  [[nodiscard]] std::int64_t ChangedRows() const noexcept;

  // Runs `body` in one transaction, all or nothing. When committing fails, `arrived` is asked whether
  // the change is in the file nevertheless: a commit may report a failure that came too late to stop it. A
  // change that other programs might not find, or might overwrite, because the file, its log or its shared
  // memory is no longer what was opened, is not acknowledged.
  void Write(const std::function<void()>& body, const std::function<bool()>& arrived);
  // Runs `body` on one state of the file, whatever other programs write meanwhile.
  void Read(const std::function<void()>& body);

  // From now on statements do nothing but read what the guard says, besides those of this class; with an
  // empty one whatever they like.
  void Guard(ReadGuard::MayRead may_read);
  // From now on statements fail with 18 once `is_over` says so, which is asked all the time while they run;
  // not inside a single call of a function, however long. Gives back the one before; empty: never.
  std::function<bool()> StopWhen(std::function<bool()> is_over);

  // Settles what the file must be for writing: changes go through a log, each one to the disk.
  void PrepareForWriting();
  // Moves what the log holds into the file, without waiting for anybody, so that a copy of the file alone is
  // whole. False when others stood in the way, or the disk did; then it can be tried again.
  bool EmptyLog();
  // `told` is called behind every change that Write stored.
  void OnWritten(std::function<void()> told) { written_ = std::move(told); }

  [[noreturn]] void Refuse(int number, const std::string& problem) const;

 private:
  friend class Statement;
  struct Close {
    void operator()(sqlite3* database) const noexcept;
  };
  using Handle = std::unique_ptr<sqlite3, Close>;

  [[nodiscard]] Handle OpenAs(const std::string& name, int flags) const;
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
  // What the last call of the database ended with.
  [[noreturn]] void Fail() const;
  [[noreturn]] void Fail(sqlite3* database) const;

  static int IsOver(void* connection) noexcept;

  std::string path_, what_;
  std::chrono::milliseconds patience_;
  Access access_;
  std::unique_ptr<ReadGuard> guard_;  // outlives the handle
  std::function<bool()> is_over_;
  mutable Handle handle_;
  mutable std::optional<FileState> unlocked_;  // the state of a file that is read without locks
  FilesInPlace files_;                         // as opened; no log before PrepareForWriting
  std::function<void()> written_;
};

}  // namespace plovix
