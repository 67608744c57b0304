// Which managers of a task file live, and which of the processes that watch over their programs. Used by
// managers, and by whoever asks about them.
//
// Each manager holds a lock of the kernel on a byte of its own, in a file beside the task file; so does, for
// each run of a program, the process that watches over it. The lock ends with the process, however that ends,
// and costs no write while it lives.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sqlite_run_store.h"

namespace plovix {

// The file beside a task file with the locks.
class LockFile final {
 public:
  // Makes the file, readable only by the user, if there is none; nobody deletes it. Fails with a message that
  // names the file if it cannot be used.
  explicit LockFile(const std::string& task_file);
  ~LockFile();
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;

  [[nodiscard]] const std::string& Path() const noexcept { return path_; }
  // False if another process has it.
  [[nodiscard]] bool Lock(std::int64_t byte) const;
  // Whether another process has it. Fails if the kernel cannot tell.
  [[nodiscard]] bool IsLocked(std::int64_t byte) const;
  // False once the file was deleted or replaced.
  [[nodiscard]] bool IsInPlace() const;
  // Which task file's managers it shows, and the last one's number; empty in a new file.
  [[nodiscard]] std::string Text() const;
  void NoteText(const std::string& text) const;

 private:
  std::string path_;
  int descriptor_;
};

// The byte for what runs for a run: beyond those of the managers, which are their numbers.
[[nodiscard]] constexpr std::int64_t ByteOfRun(std::int64_t run) {
  constexpr std::int64_t kFirst = std::int64_t{1} << 48;
  return kFirst + run;
}

class ManagerLock final {
 public:
  // Gives the manager its number, locks the byte at that place, and tells who it is; forgets dead ones. Fails
  // as LockFile does.
  //
  // A forked child that does not execute another program keeps the lock for as long as it lives.
  explicit ManagerLock(SqliteRunStore& store, ManagerKind kind = ManagerKind::kTerminal);
  ~ManagerLock();
  ManagerLock(const ManagerLock&) = delete;
  ManagerLock& operator=(const ManagerLock&) = delete;

  // No living manager has it, and no dead one of this task file has had it.
  [[nodiscard]] std::int64_t Number() const noexcept { return number_; }
  // Whether the manager with that number lives; also true of this one. Fails if the kernel cannot tell.
  [[nodiscard]] bool IsAlive(std::int64_t number) const;
  // Whether the lock file names a later manager than the task file did, or another task file: this one was
  // restored from a copy, or put in its place.
  [[nodiscard]] bool SawRestored() const noexcept { return saw_restored_; }
  // Whether anything that was started for the run may still live.
  [[nodiscard]] bool IsHeld(std::int64_t run) const { return file_.IsLocked(ByteOfRun(run)); }
  // False once the lock file was deleted or replaced: others then cannot see this manager, which has to stop.
  [[nodiscard]] bool StillMine() const { return file_.IsInPlace(); }
  // For programs that are started.
  [[nodiscard]] const std::string& Path() const noexcept { return file_.Path(); }
  // It takes no more runs, so others no longer name it. What it has begun is still its own.
  void Leave();

 private:
  SqliteRunStore& store_;
  LockFile file_;
  std::int64_t number_ = 0;
  bool saw_restored_ = false;
  bool is_listed_ = false;
};

// The managers that take runs of that file, in the order of their numbers. Fails if the locks cannot be asked
// about.
[[nodiscard]] std::vector<ManagerRecord> LivingManagers(SqliteRunStore& store);
// The name of this machine.
[[nodiscard]] std::string HostName();

}  // namespace plovix
