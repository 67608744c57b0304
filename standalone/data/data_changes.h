// Runs the SQL statements of actions on a user's data file: the only connection that writes it. Used by the
// manager.
#pragma once

#include <plovix/standalone/query/sql_template.h>
#include <plovix/standalone/sqlite/connection.h>

#include <atomic>
#include <chrono>
#include <string>
#include <vector>

namespace plovix {

// Belongs to one thread, except Interrupt. Fails with a Failure that names the file, and for a statement with
// a SqlFailure.
class DataChanges final {
 public:
  // An existing file. `patience`: how long a statement waits for others who write it.
  DataChanges(const std::string& path, std::chrono::milliseconds patience);

  // One statement in one transaction, with the values for its parameters "?". Foreign keys hold, and the
  // file's own triggers act. Refused are statements that reach other files, change the connection, end the
  // transaction, use functions of others, or anything of the tables whose names begin with "Velo".
  void Run(const std::string& sql, const std::vector<FieldValue>& parameters);

  // From any thread: the statement that runs now fails with 18 and changes nothing, and so do all after it
  // until Resume. A statement that waits for another program waits on, no longer than its patience.
  void Interrupt() noexcept { interrupted_ = true; }
  void Resume() noexcept { interrupted_ = false; }

 private:
  void CheckInterrupted() const;

  std::atomic<bool> interrupted_ = false;
  Connection connection_;
};

}  // namespace plovix
