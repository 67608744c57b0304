// What of the history a person is to be told by itself: that a task fails, works again, or did not run. Once
// for each state of a task, however long it lasts.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include "run_record.h"

namespace plovix {

enum class NoticeKind { kFails, kWorksAgain, kMissed };

struct Notice {
  NoticeKind kind = NoticeKind::kFails;
  RunRecord run;
};

class NoticeRules {
 public:
  // `failures`: how many in a row are told; at least 1.
  explicit NoticeRules(int failures = 1) : failures_(failures) {}

  // `runs`: the latest part of the history, newest first; the next part may overlap with it, and has to do so
  // if nothing is to be overlooked. What the first part contains is known and not told.
  [[nodiscard]] std::vector<Notice> Take(const std::vector<RunRecord>& runs);

 private:
  struct TaskState {
    int failures = 0;                    // in a row
    bool fails = false, missed = false;  // told
  };
  [[nodiscard]] bool IsTold(const RunRecord& run, NoticeKind& kind);

  int failures_;
  std::map<std::int64_t, TaskState> tasks_;
  std::set<std::int64_t> seen_;  // runs that are over
  bool is_first_ = true;
};

}  // namespace plovix
