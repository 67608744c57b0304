#include "notice_rules.h"

#include <ranges>

namespace plovix {

std::vector<Notice> NoticeRules::Take(const std::vector<RunRecord>& runs) {
  std::vector<Notice> notices;
  for (const RunRecord& run : runs | std::views::reverse) {
    if (run.IsDry() || !run.IsOver() || !seen_.insert(run.id).second) continue;
    NoticeKind kind{};
    if (IsTold(run, kind) && !is_first_) notices.push_back({kind, run});
  }
  if (!runs.empty()) seen_.erase(seen_.begin(), seen_.lower_bound(runs.back().id));
  is_first_ = false;
  return notices;
}

// Nobody has to be told what they asked for: that a run was cancelled, or missed in a pause.
bool NoticeRules::IsTold(const RunRecord& run, NoticeKind& kind) {
  TaskState& task = tasks_[run.task];
  switch (run.state) {
    case RunState::kSucceeded: {
      kind = NoticeKind::kWorksAgain;
      const bool failed = task.fails;
      task = {};
      return failed;
    }
    case RunState::kFailed:
    case RunState::kPartly:
    case RunState::kInterrupted:
      kind = NoticeKind::kFails;
      task.missed = false;
      if (++task.failures < failures_ || task.fails) return false;
      return task.fails = true;
    case RunState::kMissed:
      kind = NoticeKind::kMissed;
      if (run.reason == "paused" || task.missed) return false;
      return task.missed = true;
    case RunState::kWaiting:
    case RunState::kRunning:
    case RunState::kCancelled:
    case RunState::kSkipped:
      break;
  }
  return false;
}

}  // namespace plovix
