#include "run_rules.h"

#include <algorithm>

namespace plovix {

RunRecord Begun(RunRecord run, Instant now, std::int64_t manager) {
  run.state = RunState::kRunning;
  run.started = now;
  run.ended.reset();
  run.manager = manager;
  run.reason.clear();
  ++run.attempt;
  ++run.epoch;
  return run;
}

RunRecord Ended(RunRecord run, const RunEnd& end) {
  run.state = end.state;
  run.reason = end.reason;
  run.records = end.records;
  run.planned = end.planned;
  run.manager = 0;
  run.failures = end.failures;
  run.repeats = end.repeats;
  if (end.state == RunState::kWaiting)
    run.not_before = end.not_before;
  else
    run.ended = end.at;
  return run;
}

RunRecord Extended(RunRecord row, const MissedSpan& more) {
  const MissedSpan& span = row.missed.value();
  row.missed = {std::min(span.from, more.from), std::max(span.to, more.to), span.count + more.count};
  return row;
}

bool Passes(const RunRecord& run, const RunFilter& filter) {
  return (!filter.task || run.task == *filter.task) && (!filter.before || run.id < *filter.before) &&
         (filter.states.empty() || std::ranges::count(filter.states, run.state) > 0);
}

bool Passes(const AuditEntry& entry, const AuditFilter& filter) {
  return (!filter.task || entry.task == *filter.task) && (!filter.before || entry.id < *filter.before);
}

AuditEntry EntryOf(Deed deed, const Doer& by, std::int64_t task, std::int64_t run, std::string detail) {
  return {0, by.at, by.person, deed, task, run, std::move(detail)};
}

AuditEntry EntryOfRequest(const RunRecord& run) {
  Deed deed = Deed::kStart;
  if (run.IsDry()) deed = Deed::kDryRun;
  if (run.origin == RunOrigin::kCatchUp) deed = Deed::kRunMissed;
  return EntryOf(deed, {run.person, run.not_before}, run.task, run.id);
}

AuditEntry EntryOfPause(std::int64_t task, const std::optional<Pause>& pause, const Doer& by) {
  const bool of_all = task == 0;
  const Deed paused = of_all ? Deed::kPauseAll : Deed::kPause;
  const Deed resumed = of_all ? Deed::kResumeAll : Deed::kResume;
  return EntryOf(pause ? paused : resumed, by, task, 0, pause ? pause->reason : "");
}

AuditEntry EntryOfPolicies(std::int64_t task, const TaskPolicies& policies, const Doer& by) {
  std::string words;
  const auto add = [&](std::string_view name, std::string_view value) {
    words.append(words.empty() ? "" : ", ").append(name).append(" ").append(value);
  };
  add("missed", kMissedPolicyNames.at(IndexOf(policies.missed)));
  if (policies.missed == MissedPolicy::kAll) words += " " + std::to_string(policies.missed_count);
  add("overlap", kOverlapPolicyNames.at(IndexOf(policies.overlap)));
  add("retries", std::to_string(policies.retries));
  add("interrupted", kInterruptedPolicyNames.at(IndexOf(policies.interrupted)));
  add("short-month", kShortMonthNames.at(IndexOf(policies.short_month)));
  add("limit", std::to_string(policies.limit.count()));
  return EntryOf(Deed::kSetPolicies, by, task, 0, std::move(words));
}

}  // namespace plovix
