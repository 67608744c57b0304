// What people ask of tasks and of their runs. Windows and scripts go through this, so that rights, and what
// has to be stored before and after, are the same for both.
#pragma once

#include <plovix/standalone/schedule/zone.h>
#include <plovix/standalone/tasks/task_access.h>
#include <plovix/standalone/tasks/task_storage.h>

#include <functional>

#include "run_store.h"

namespace plovix {

struct TaskControlParts {
  TaskStorage& tasks;
  RunStore& runs;
  Zone zone;  // of the schedules
  std::function<Instant()> now;
  std::string person;  // the id of the user who asks
  // That user as stored now; nothing if they are gone. Empty: everything is allowed.
  std::function<std::optional<UserRecord>()> user = {};
};

// Each member asks for the person's rights as it is called. It fails with 70 if they are missing, and with 5,
// in words, if what it is about is no longer there or not as it has to be.
class TaskControl {
 public:
  explicit TaskControl(TaskControlParts parts) : parts_(std::move(parts)) {}

  // The present instant of the clock.
  [[nodiscard]] Instant Now() const { return parts_.now(); }

  // A run as soon as the task is free; a dry run at once. `keys`: the records to process, typed as in the
  // ledger; empty: those of the query. Right: run. Returns the run with its id.
  RunRecord Start(std::int64_t task, RunOrigin origin, std::vector<std::string> keys = {});
  // Once more what that run did: with the records chosen for it, or those of it that failed.
  RunRecord StartAgain(std::int64_t run, bool only_failed);
  // One catch-up run for the latest of the occurrences that a missed row stands for. Right: run.
  RunRecord StartMissed(std::int64_t run);
  // A waiting run ends at once, a running one as soon as its manager has ended its action. Right: run.
  void Cancel(std::int64_t run);
  // Closes the run whatever its manager does; what that manager still writes of it is refused. Right: run.
  void CloseByForce(std::int64_t run);
  // A record in doubt or failed becomes done, so that it is left alone; or is forgotten, so that the next run
  // takes it. Right: run.
  void Decide(std::int64_t task, const std::string& record, bool done);

  // A task, or nothing for everything. Right: edit; for everything an administrator.
  void Pause(std::optional<std::int64_t> task, const std::string& reason);
  // What came due in the pause stays a missed row. A task that is held stays so.
  void Resume(std::optional<std::int64_t> task);
  // Ends the hold of an imported task: the person has seen what that version of it does. Right: run, and to
  // run programs if it does.
  void Release(std::int64_t task, std::int64_t version);
  // Right: edit.
  void SetPolicies(std::int64_t task, const TaskPolicies& policies);

 private:
  TaskRecord Allowed(std::int64_t task, TaskRight right) const;
  void PlanUntilNow(std::int64_t task);
  [[nodiscard]] Doer ThePerson() const { return {parts_.person, parts_.now()}; }
  RunRecord AllowedRun(std::int64_t run, TaskRight right) const;
  void AllowAll() const;
  RunRecord Ask(std::int64_t task, RunOrigin origin, std::vector<std::string> keys,
                std::optional<Instant> due = std::nullopt);

  TaskControlParts parts_;
};

}  // namespace plovix
