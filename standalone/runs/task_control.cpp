#include "task_control.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/schedule/runs.h>

#include "planner.h"

namespace plovix {
namespace {

constexpr int kRightMissing = 70;  // the customary number of a denied permission

[[noreturn]] void RefuseRequest(int number, const std::string& why) {
  throw Failure(number, why);
}

}  // namespace

TaskRecord TaskControl::Allowed(std::int64_t id, TaskRight right) const {
  auto task = parts_.tasks.Load(id);
  if (!task) RefuseRequest(failure_number::kInvalidCall, "the task is no longer there");
  if (!parts_.user) return *std::move(task);
  const auto user = parts_.user();
  if (!user || !May(*user, *task, right))
    RefuseRequest(kRightMissing, "the user may not do that with this task");
  return *std::move(task);
}

RunRecord TaskControl::AllowedRun(std::int64_t id, TaskRight right) const {
  auto run = parts_.runs.Run(id);
  if (!run) RefuseRequest(failure_number::kInvalidCall, "the run is no longer there");
  (void)Allowed(run->task, right);
  return *std::move(run);
}

void TaskControl::AllowAll() const {
  if (!parts_.user) return;
  const auto user = parts_.user();
  if (!user || !user->administrator)
    RefuseRequest(kRightMissing, "only an administrator may pause or resume everything");
}

RunRecord TaskControl::Ask(std::int64_t task, RunOrigin origin, std::vector<std::string> keys,
                           std::optional<Instant> due) {
  const auto stored = parts_.tasks.Load(task);
  if (stored && stored->held && origin != RunOrigin::kDryRun)
    RefuseRequest(failure_number::kInvalidCall, "the task was imported and has to be released first");
  RunRecord run;
  run.task = task;
  run.due = due;
  run.origin = origin;
  run.not_before = parts_.now();
  run.person = parts_.person;
  run.keys = std::move(keys);
  return parts_.runs.Request(std::move(run));
}

RunRecord TaskControl::Start(std::int64_t task, RunOrigin origin, std::vector<std::string> keys) {
  (void)Allowed(task, TaskRight::kRun);
  return Ask(task, origin, std::move(keys));
}

RunRecord TaskControl::StartAgain(std::int64_t id, bool only_failed) {
  RunRecord run = AllowedRun(id, TaskRight::kRun);
  if (only_failed) {
    run.keys.clear();
    for (const LedgerRow& row : parts_.runs.Ledger(run.task))
      if (row.run == id && row.state == LedgerState::kFailed) run.keys.push_back(row.record);
    if (run.keys.empty())
      RefuseRequest(failure_number::kInvalidCall, "no record of that run counts as failed any more");
  }
  return Ask(run.task, run.IsDry() ? RunOrigin::kDryRun : RunOrigin::kManual, std::move(run.keys));
}

RunRecord TaskControl::StartMissed(std::int64_t id) {
  const RunRecord row = AllowedRun(id, TaskRight::kRun);
  if (!row.missed) RefuseRequest(failure_number::kInvalidCall, "nothing was missed there");
  RunRecord run = Ask(row.task, RunOrigin::kCatchUp, {}, row.missed->to);
  if (run.id == 0)
    RefuseRequest(failure_number::kInvalidCall, "what was missed has been made up for already");
  return run;
}

void TaskControl::Cancel(std::int64_t id) {
  (void)AllowedRun(id, TaskRight::kRun);
  if (!parts_.runs.Cancel(id, "cancelled", ThePerson()))
    RefuseRequest(failure_number::kInvalidCall, "the run is over");
}

void TaskControl::CloseByForce(std::int64_t id) {
  const RunRecord run = AllowedRun(id, TaskRight::kRun);
  RunEnd end;
  end.run = id;
  end.epoch = run.epoch;
  end.state = RunState::kCancelled;
  end.at = parts_.now();
  end.reason = "cancelled";
  end.records = run.records;
  if (run.IsOver() || !parts_.runs.CloseByForce(end, ThePerson()))
    RefuseRequest(failure_number::kInvalidCall, "the run is over");
}

void TaskControl::Decide(std::int64_t task, const std::string& record, bool done) {
  (void)Allowed(task, TaskRight::kRun);
  if (!parts_.runs.Decide(task, record, done, ThePerson()))
    RefuseRequest(failure_number::kInvalidCall, "the record is no longer in doubt and has not failed");
}

void TaskControl::Pause(std::optional<std::int64_t> task, const std::string& reason) {
  const plovix::Pause pause{parts_.person, reason, parts_.now()};
  if (!task) {
    AllowAll();
    return parts_.runs.SetPauseOfAll(pause, ThePerson());
  }
  (void)Allowed(*task, TaskRight::kEdit);
  parts_.runs.SetPause(*task, pause, ThePerson());
}

// What came due in a pause gets its row before the pause ends.
void TaskControl::Resume(std::optional<std::int64_t> task) {
  if (!task) {
    AllowAll();
    for (const TaskState& state : parts_.runs.States()) PlanUntilNow(state.task);
    return parts_.runs.SetPauseOfAll(std::nullopt, ThePerson());
  }
  if (Allowed(*task, TaskRight::kEdit).held)
    RefuseRequest(failure_number::kInvalidCall, "the task was imported and has to be released");
  PlanUntilNow(*task);
  parts_.runs.SetPause(*task, std::nullopt, ThePerson());
}

void TaskControl::PlanUntilNow(std::int64_t task) {
  PlanNow(parts_.tasks, parts_.runs, parts_.zone, task, parts_.now());
}

void TaskControl::Release(std::int64_t id, std::int64_t version) {
  const TaskRecord task = Allowed(id, TaskRight::kRun);
  const auto user = parts_.user && NeedsProgramRight(task) ? parts_.user() : std::nullopt;
  if (user && !MayRunPrograms(*user))
    RefuseRequest(kRightMissing, "the user may not run programs or SQL, as the task does");
  PlanUntilNow(id);
  if (!parts_.runs.Release(id, version, ThePerson())) {
    RefuseRequest(failure_number::kInvalidCall,
                  "the task was changed or released since it was shown; look at it again");
  }
}

void TaskControl::SetPolicies(std::int64_t task, const TaskPolicies& policies) {
  (void)Allowed(task, TaskRight::kEdit);
  parts_.runs.SetPolicies(task, policies, ThePerson());
}

}  // namespace plovix
