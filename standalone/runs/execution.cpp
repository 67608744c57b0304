#include "execution.h"

#include <plovix/base/failure.h>
#include <plovix/host/auto_task.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "record_choice.h"

namespace plovix {
namespace {

constexpr int kMostFailuresInARow = 20;
constexpr int kMostRepeats = 3;

std::chrono::minutes DelayAfter(int failures) {
  return failures > 6 ? kLongestDelay : std::min(std::chrono::minutes{1 << (failures - 1)}, kLongestDelay);
}

RunEnd EndOf(const RunRecord& run, RunState state, std::string reason, Instant now) {
  RunEnd end;
  end.run = run.id;
  end.epoch = run.epoch;
  end.state = state;
  end.at = end.not_before = now;
  end.reason = std::move(reason);
  end.failures = run.failures;
  end.repeats = run.repeats;
  end.records = run.records;
  return end;
}

}  // namespace

RunEnd EndOfInterrupted(const RunRecord& run, const TaskPolicies& policies, bool crashed, Instant now) {
  const std::string what =
      crashed ? "its manager ended while it ran" : "its manager was stopped while it ran";
  const bool repeats =
      !run.cancel && policies.interrupted == InterruptedPolicy::kRepeat && run.repeats < kMostRepeats;
  RunEnd end = EndOf(run, repeats ? RunState::kWaiting : RunState::kInterrupted, what, now);
  if (repeats) {
    end.reason += "; it will be repeated";
    if (crashed) ++end.repeats;
    return end;
  }
  if (run.cancel) {
    end.state = RunState::kCancelled;
    end.reason = run.reason;
  } else if (policies.interrupted == InterruptedPolicy::kRepeat) {
    end.reason += ", and it was repeated " + std::to_string(run.repeats) + " times before";
  }
  return end;
}

Execution::Execution(const ManagerPorts& ports, RunRecord run, TaskPolicies policies)
    : ports_(ports), run_(std::move(run)), policies_(policies) {
  run_.records = {};
}

std::optional<Instant> Execution::Deadline() const {
  if (policies_.limit.count() == 0 || run_.IsDry()) return std::nullopt;
  return *run_.started + policies_.limit;
}

std::optional<RunEnd> Execution::Begin(Instant now) {
  try {
    Prepare();
  } catch (const std::exception&) {
    return Failed(RunState::kFailed, CurrentFailure().Description(), now);
  }
  return GoOn(now);
}

void Execution::Prepare() {
  const auto refuse = [](const std::string& why) { throw Failure(failure_number::kInvalidCall, why); };
  const auto task = ports_.tasks.Load(run_.task);
  if (!task) refuse("the task was deleted");
  task_ = *task;
  if (task_.held && !run_.IsDry())
    refuse("the task was imported; somebody who may run it has to look at what it does and release it");
  if (const auto refusal = ports_.refusal ? ports_.refusal(task_, run_) : std::nullopt) refuse(*refusal);
  if (task_.record_mode == record_mode::kNoData) return;
  if (task_.record_mode == record_mode::kSingleRecord && run_.keys.size() != 1)
    refuse("the task works on a single record, and none was chosen");
  const bool clears = task_.process_all_records || task_.process_failed_records;
  if (clears && !run_.IsDry() && run_.attempt == 1)
    lost_ = !ports_.runs.ClearLedger(run_, !task_.process_all_records);
  pass_ = ports_.records.Open(task_, run_.keys);
  if (task_.base_date != kZeroDate && !pass_->TellsChange()) {
    refuse("the data object \"" + task_.data_object_caption +
           "\" has no field that tells when a record changed, so its records cannot be compared with a date");
  }
}

std::optional<RunEnd> Execution::GoOn(Instant now) {
  while (!lost_) {
    if (!in_record_) {
      if (failed_in_a_row_ == kMostFailuresInARow) return Failed(RunState::kFailed, TooManyFailures(), now);
      try {
        if (!TakeNext()) return Over(now);
      } catch (const std::exception&) {
        const std::string failure = CurrentFailure().Description();
        if (in_record_) EndRecord(failure);  // it may be in the ledger as begun
        return Failed(RunState::kFailed, failure, now);
      }
      if (lost_) break;
    }
    std::string failure;
    try {
      if (action_ < task_.actions.size()) {
        ActionOrder order = OrderOf(task_.actions[action_++], values_, ports_.secrets);
        order.run = run_.id;
        order.epoch = run_.epoch;
        if (current_) order.record = current_->record;
        if (!run_.IsDry()) {
          ports_.launcher.Begin(order);
          return std::nullopt;
        }
        planned_ += (planned_.empty() ? "" : ",") + OrderJson(order).dump();
        continue;
      }
    } catch (const std::exception&) {
      failure = CurrentFailure().Description();
    }
    EndRecord(failure);
  }
  ports_.launcher.Stop(run_.id);
  return std::nullopt;
}

bool Execution::TakeNext() {
  if (!pass_) {
    if (!std::exchange(one_to_come_, false)) return false;
    in_record_ = true;
    return true;
  }
  while (auto record = pass_->Next()) {
    ++run_.records.found;
    if (!IsTaken(*record)) continue;
    BeginRecord(std::move(*record));
    return true;
  }
  return false;
}

bool Execution::IsTaken(const SourceRecord& record) {
  switch (Choose(task_, run_, record, ports_.runs.LedgerOf(run_.task, record.key))) {
    case RecordChoice::kTake:
      return true;
    case RecordChoice::kDoneBefore:
      ++run_.records.done;
      return false;
    case RecordChoice::kSkip:
      ++run_.records.skipped;
      return false;
  }
  return false;
}

// "Begun" of this record and the end of the last one are written together, so that each record costs one
// sync.
void Execution::BeginRecord(SourceRecord record) {
  current_ = LedgerRow{record.key, LedgerState::kBegun, FingerprintOf(record), run_.id, {}};
  values_ = std::move(record.values);
  action_ = 0;
  in_record_ = true;
  if (run_.IsDry()) return;
  std::vector<LedgerRow> rows = ended_;
  rows.push_back(*current_);
  lost_ = lost_ || !ports_.runs.Write(run_, rows);
  ended_.clear();
}

void Execution::EndRecord(const std::string& failure) {
  in_record_ = false;
  if (!failure.empty() && first_failure_.empty()) first_failure_ = failure;
  failed_in_a_row_ = failure.empty() ? 0 : failed_in_a_row_ + 1;
  if (!current_) return;
  ++(failure.empty() ? run_.records.done : run_.records.failed);
  current_->state = failure.empty() ? LedgerState::kDone : LedgerState::kFailed;
  current_->reason = failure;
  ended_.push_back(*std::exchange(current_, std::nullopt));
}

std::optional<RunEnd> Execution::ActionEnded(const std::string& failure, Instant now) {
  if (!failure.empty()) EndRecord(failure);
  return GoOn(now);
}

std::string Execution::TooManyFailures() const {
  return "stopped after " + std::to_string(kMostFailuresInARow) +
         " records in a row had failed; the first: " + first_failure_;
}

RunEnd Execution::EndAs(RunState state, std::string reason, Instant now) const {
  RunEnd end = EndOf(run_, state, std::move(reason), now);
  if (!run_.IsDry()) end.rows = ended_;
  if (run_.IsDry()) end.planned = "[" + planned_ + "]";
  return end;
}

RunEnd Execution::Over(Instant now) const {
  if (first_failure_.empty()) return EndAs(RunState::kSucceeded, "", now);
  if (!pass_) return Failed(RunState::kFailed, first_failure_, now);
  const auto& counts = run_.records;
  return Failed(counts.done > 0 ? RunState::kPartly : RunState::kFailed,
                std::to_string(counts.failed) + " of " + std::to_string(counts.failed + counts.done) +
                    " records failed; the first: " + first_failure_,
                now);
}

RunEnd Execution::Failed(RunState state, const std::string& reason, Instant now) const {
  RunEnd end = EndAs(state, reason, now);
  ++end.failures;
  if (run_.IsDry() || end.failures > policies_.retries) return end;
  end.state = RunState::kWaiting;
  end.not_before = now + DelayAfter(end.failures);
  return end;
}

void Execution::StopNow(const std::string& failure) {
  ports_.launcher.Stop(run_.id);
  if (in_record_) EndRecord(failure);
}

RunEnd Execution::Cancel(const std::string& reason, Instant now) {
  StopNow(reason);
  return EndAs(RunState::kCancelled, reason, now);
}

RunEnd Execution::OutOfTime(Instant now) {
  const std::string reason =
      "it took longer than its limit of " + std::to_string(policies_.limit.count()) + " seconds";
  StopNow(reason);
  return Failed(RunState::kFailed, reason, now);
}

RunEnd Execution::Stop(Instant now) {
  ports_.launcher.Stop(run_.id);
  RunEnd end = EndOfInterrupted(run_, policies_, false, now);
  end.rows = ended_;
  return end;
}

}  // namespace plovix
