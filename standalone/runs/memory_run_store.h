// Runs in memory, beside tasks in any storage. For scripts, tests and the simulation; lost with the object.
#pragma once

#include <plovix/standalone/tasks/task_storage.h>

#include <deque>
#include <map>
#include <set>

#include "run_store.h"

namespace plovix {

class MemoryRunStore final : public RunStore {
 public:
  // `tasks` outlives the store.
  explicit MemoryRunStore(TaskStorage& tasks) : tasks_(tasks) {}

  [[nodiscard]] std::vector<TaskState> States() override;
  [[nodiscard]] std::optional<TaskState> State(std::int64_t task) override;
  [[nodiscard]] std::vector<std::int64_t> Unplanned() override;
  [[nodiscard]] std::vector<std::int64_t> Due(Instant now) override;
  [[nodiscard]] std::optional<Instant> NextWake() override;
  bool MoveCursor(const CursorMove& move) override;
  void SetPolicies(std::int64_t task, const TaskPolicies& policies, const Doer& by) override;
  void SetPause(std::int64_t task, const std::optional<Pause>& pause, const Doer& by) override;
  bool Release(std::int64_t task, std::int64_t version, const Doer& by) override;
  void SetPauseOfAll(const std::optional<Pause>& pause, const Doer& by) override;
  [[nodiscard]] std::optional<Pause> PauseOfAll() override { return all_paused_; }
  RunRecord Request(RunRecord run) override;
  bool Cancel(std::int64_t run, const std::string& reason, const Doer& by) override;
  bool CloseByForce(const RunEnd& end, const Doer& by) override;
  [[nodiscard]] Turn EndAndClaim(const std::vector<RunEnd>& ends, std::size_t most, Instant now,
                                 std::int64_t manager) override;
  void BringForward(Instant now, std::chrono::seconds most) override;
  [[nodiscard]] std::vector<RunRecord> UnderWay() override;
  // Differs each time: everybody who writes shares this object, and asks when there is something to ask.
  [[nodiscard]] std::int64_t ChangeCount() override { return ++asked_; }
  [[nodiscard]] std::vector<RunRecord> History(std::optional<std::int64_t> task) override;
  [[nodiscard]] std::optional<RunRecord> Run(std::int64_t run) override;
  [[nodiscard]] std::vector<RunRecord> Recent(const RunFilter& filter) override;
  [[nodiscard]] std::vector<RunRecord> LatestOfEach() override;
  bool Trim(std::int64_t most, std::int64_t batch) override;
  [[nodiscard]] std::vector<LedgerRow> Ledger(std::int64_t task) override;
  [[nodiscard]] std::optional<LedgerRow> LedgerOf(std::int64_t task, const std::string& record) override;
  [[nodiscard]] std::vector<LedgerRow> LedgerOfRun(const LedgerFilter& filter) override;
  bool Write(const RunRecord& run, const std::vector<LedgerRow>& rows) override;
  bool ClearLedger(const RunRecord& run, bool only_failed) override;
  bool Decide(std::int64_t task, const std::string& record, bool done, const Doer& by) override;
  void Audit(AuditEntry entry) override;
  [[nodiscard]] std::vector<AuditEntry> Audits(const AuditFilter& filter) override;

 private:
  [[nodiscard]] TaskState& StateOf(std::int64_t task);
  [[nodiscard]] TaskState& StateOf(const TaskRecord& task);
  [[nodiscard]] TaskState Known(std::int64_t task) const;
  [[nodiscard]] bool IsOwner(std::int64_t run, std::int64_t epoch) const;
  [[nodiscard]] const RunRecord* FirstToBegin(Instant until) const;
  // Adds a row, or gives back nothing where the occurrence has one already.
  RunRecord* Add(RunRecord run);
  // Writes the run, and what its task's state says of it.
  void Put(const RunRecord& run);
  void LeaveInDoubt(const RunRecord& run);
  // Nothing happens if the task is gone.
  void Put(std::int64_t task, const std::vector<LedgerRow>& rows);

  TaskStorage& tasks_;
  std::map<std::int64_t, TaskState> states_;
  std::map<std::int64_t, RunRecord> runs_;
  std::set<std::int64_t> open_;  // those that are not over
  std::set<std::pair<std::int64_t, Instant>> occurrences_;
  std::map<std::int64_t, std::map<std::string, LedgerRow>> ledger_;
  std::optional<Pause> all_paused_;
  std::deque<AuditEntry> audits_;  // oldest first
  std::int64_t asked_ = 0;
};

}  // namespace plovix
