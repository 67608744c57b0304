// Which managers of a task file live. Used by managers, and by whoever asks about them.
//
// Each manager holds a lock of the kernel on a byte of its own, in a file beside the task file. The lock ends
// with the process, however that ends, and costs no write while it lives.
#pragma once

#include <cstdint>
#include <string>

#include "sqlite_run_store.h"

namespace plovix {

class ManagerLock final {
 public:
  // Gives the manager its number, and locks the byte at that place. Makes the lock file, readable only by the
  // user, if there is none; nobody deletes it. Fails with a message that names the file if it cannot be used.
  //
  // A forked child that does not execute another program keeps the lock for as long as it lives.
  explicit ManagerLock(SqliteRunStore& store);

  // No living manager has it, and no dead one of this task file has had it.
  [[nodiscard]] std::int64_t Number() const noexcept { return number_; }
  // Whether the manager with that number lives; also true of this one. Fails if the kernel cannot tell.
  [[nodiscard]] bool IsAlive(std::int64_t number) const;
  // Whether the lock file names a later manager than the task file did, or another task file: this one was
  // restored from a copy, or put in its place.
  [[nodiscard]] bool SawRestored() const noexcept { return saw_restored_; }
  // False once the lock file was deleted or replaced: others then cannot see this manager, which has to stop.
  [[nodiscard]] bool StillMine() const;

 private:
  class File {
   public:
    explicit File(const std::string& path);
    ~File();
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    [[nodiscard]] int Descriptor() const noexcept { return descriptor_; }

   private:
    int descriptor_;
  };
  [[nodiscard]] bool Lock(std::int64_t number) const;
  // The text of the file: which task file's managers it shows, and the last one's number. Empty in a new
  // file.
  [[nodiscard]] std::string Text() const;
  void NoteText(const std::string& text) const;

  std::string path_;
  File file_;
  std::int64_t number_ = 0;
  bool saw_restored_ = false;
};

}  // namespace plovix
