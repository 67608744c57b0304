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

}  // namespace plovix
