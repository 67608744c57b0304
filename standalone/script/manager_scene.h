// The automation manager of a script: it lives on the host's clock, its actions are recorded instead of
// executed, and the records of the script's data objects stand in a database in memory.
#pragma once

#include <plovix/standalone/data/memory_records.h>
#include <plovix/standalone/objects/host_state.h>
#include <plovix/standalone/runs/manager.h>
#include <plovix/standalone/runs/memory_run_store.h>
#include <plovix/standalone/runs/task_control.h>
#include <plovix/standalone/tasks/users_and_tags.h>

#include "recorded_launcher.h"
#include "words.h"

namespace plovix::script {

class ManagerScene {
 public:
  struct Parts {
    TaskStorage& storage;
    RunStore* runs;         // nullptr: in memory
    RecordSource* records;  // likewise
    HostState& state;
    UsersAndTags* tables;  // nullptr: nobody's rights are asked for
    std::string person;    // who asks for runs; one of `tables`, if they are given
    Zone zone;             // of the schedules
  };
  // All outlive the scene.
  explicit ManagerScene(const Parts& parts);

  // A manager lives from the host's now until `until`, which becomes the host's now. A LineError for the
  // past.
  void Advance(Instant until);
  // The manager is stopped, and time goes on without one.
  void Down(Instant until);
  [[nodiscard]] Instant InstantAt(const ClockTimeWord& word) const;
  [[nodiscard]] Instant Now() const;
  [[nodiscard]] const Zone& SchedulesZone() const noexcept { return zone_; }

  // What a person asks for.
  [[nodiscard]] TaskControl Control();
  // The same, until the run is over.
  void Cancel(std::int64_t run);

  [[nodiscard]] RunStore& Runs() noexcept { return runs_; }
  [[nodiscard]] MemoryRecords& Records() noexcept { return records_; }
  [[nodiscard]] RecordedLauncher& Actions() noexcept { return launcher_; }
  // With its offset from UTC, as `runs` prints it.
  [[nodiscard]] std::string TimeText(Instant at) const;

 private:
  // False if the manager crashed.
  bool LiveUntil(Instant until);
  void SetNow(Instant now);
  void CheckFuture(Instant until) const;

  HostState& state_;
  UsersAndTags* tables_;
  std::string person_;
  Zone zone_;
  MemoryRunStore memory_;
  RunStore& runs_;
  MemoryRecords records_;
  RecordedLauncher launcher_;
  ManagerPorts ports_;
  std::unique_ptr<Manager> manager_;
  std::int64_t managers_ = 0;
};

}  // namespace plovix::script
