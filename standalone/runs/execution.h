// One claimed run under way: its records one after another, for each of them its actions in their order. Used
// by Manager.
#pragma once

#include "manager_ports.h"

namespace plovix {

// Between two attempts.
inline constexpr std::chrono::minutes kLongestDelay{60};

class Execution {
 public:
  // Of a run that was just claimed. `ports` outlives it.
  Execution(const ManagerPorts& ports, RunRecord run, TaskPolicies policies);

  [[nodiscard]] const RunRecord& Run() const noexcept { return run_; }
  // When the attempt has taken as long as its policy allows.
  [[nodiscard]] std::optional<Instant> Deadline() const;

  // Each returns the end of the attempt once it is over, and nothing while an action goes on.
  [[nodiscard]] std::optional<RunEnd> Begin(Instant now);
  [[nodiscard]] std::optional<RunEnd> ActionEnded(const std::string& failure, Instant now);
  // Ends what goes on. Cancel: a person wants it; OutOfTime: its deadline; Stop: the manager stops.
  [[nodiscard]] RunEnd Cancel(const std::string& reason, Instant now);
  [[nodiscard]] RunEnd OutOfTime(Instant now);
  [[nodiscard]] RunEnd Stop(Instant now);
  // The store has given the run to somebody else: what went on was ended, and nothing is written any more.
  [[nodiscard]] bool IsLost() const noexcept { return lost_; }

 private:
  void Prepare();
  // Goes on until an action has begun (nothing), or all is over.
  [[nodiscard]] std::optional<RunEnd> GoOn(Instant now);
  [[nodiscard]] bool TakeNext();
  [[nodiscard]] bool IsTaken(const SourceRecord& record);
  void BeginRecord(SourceRecord record);
  void EndRecord(const std::string& failure);
  [[nodiscard]] RunEnd EndAs(RunState state, std::string reason, Instant now) const;
  [[nodiscard]] RunEnd Over(Instant now) const;
  // Failed for good, or to be tried again.
  [[nodiscard]] RunEnd Failed(RunState state, const std::string& reason, Instant now) const;
  [[nodiscard]] std::string TooManyFailures() const;
  // Ends what goes on; the record under way counts as failed.
  void StopNow(const std::string& failure);

  const ManagerPorts& ports_;
  RunRecord run_;
  TaskPolicies policies_;
  TaskRecord task_;
  std::unique_ptr<RecordPass> pass_;  // nullptr for a task without records
  bool one_to_come_ = true;           // without records: the single pass through the actions
  RecordValues values_;               // of the current record
  std::optional<LedgerRow> current_;  // begun, with records only
  std::vector<LedgerRow> ended_;      // of records before, not written yet
  std::size_t action_ = 0;            // the next one for the current record
  bool in_record_ = false;
  int failed_in_a_row_ = 0;
  std::string first_failure_, planned_;
  bool lost_ = false;
};

// The end of a run whose manager is gone or stops: to be repeated, or left to a person.
[[nodiscard]] RunEnd EndOfInterrupted(const RunRecord& run, const TaskPolicies& policies, bool crashed,
                                      Instant now);

}  // namespace plovix
