// Executes actions for real: programs in holders, statements on the data file by a thread of their own, log
// lines at once.
#pragma once

#include <plovix/standalone/runner/descriptor.h>
#include <plovix/standalone/runner/launcher.h>
#include <plovix/standalone/runs/manager_ports.h>

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <thread>

namespace plovix {

class DataChanges;

namespace manager {

struct LauncherSettings {
  std::vector<std::string> holder;  // the command that holds a program
  std::string data_path;            // of the data file; empty: there is none
  std::string output_folder;        // exists; gets a file for each program
  std::string lock_path;            // of the file in which a program's holder locks the run's byte
  std::string zone;                 // of the schedules, for programs
  Secrets secrets;
};

class ActionLauncher final : public Launcher {
 public:
  explicit ActionLauncher(LauncherSettings settings);
  // Ends all that runs.
  ~ActionLauncher() override;
  ActionLauncher(const ActionLauncher&) = delete;
  ActionLauncher& operator=(const ActionLauncher&) = delete;

  void Begin(const ActionOrder& order) override;
  [[nodiscard]] std::vector<ActionEnd> Ended(Instant now) override;
  void Stop(std::int64_t run) override;

  // From now on nothing begins, and what runs is asked to end, with the usual patience. What ended because of
  // that is not told.
  void End();
  // Whether nothing runs any more, not even what was stopped.
  [[nodiscard]] bool IsIdle();
  // Ends at once what still runs, and returns when it is gone; nothing begins any more.
  void Kill();

  // Readable when an action has ended.
  [[nodiscard]] int Descriptor() const noexcept { return wake_.Get(); }

 private:
  void BeginProgram(const ActionOrder& order);
  void BeginStatement(const ActionOrder& order);
  void ProgramEnded(const runner::ProgramEnd& end);
  void RunStatements(const std::stop_token& stop);
  // Whether it is the one to run, and was not stopped. With the mutex.
  [[nodiscard]] bool IsFirst(const ActionOrder& order) const;
  void Tell(ActionEnd end);

  LauncherSettings settings_;
  std::vector<std::string> environment_;
  runner::Descriptor wake_;
  std::mutex mutex_;  // guards what follows
  std::vector<ActionEnd> ended_;
  std::map<std::int64_t, std::int64_t> programs_;  // epochs by run
  std::set<std::int64_t> stopping_;                // runs whose programs were stopped and have not ended yet
  bool ending_ = false;
  std::deque<ActionOrder> statements_;  // the first one runs
  DataChanges* changes_ = nullptr;      // while the thread has the file open
  std::condition_variable_any more_;
  std::jthread statement_thread_;
  std::optional<runner::Launcher> launcher_;  // after what its thread uses
};

}  // namespace manager
}  // namespace plovix
