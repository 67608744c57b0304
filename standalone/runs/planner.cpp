#include "planner.h"

#include <plovix/standalone/schedule/task_schedule.h>
#include <plovix/standalone/tasks/task_fields.h>
#include <plovix/standalone/text/iso_time.h>

#include <algorithm>
#include <limits>

namespace plovix {
namespace {

using std::chrono::hours;
using std::chrono::seconds;

// An occurrence that is later than this is not caught up with by MissedPolicy::kOnce.
constexpr hours kLatestCatchUp{24};

class TaskPlan {
 public:
  TaskPlan(const TaskRecord& task, const TaskState& state, const Timetable& timetable, Instant now)
      : task_(task), state_(state), timetable_(timetable), now_(now) {
    busy_ = state.running_run != 0 || state.retrying;
    queued_ = state.queued;
  }

  // The rows for the span (settled, now].
  std::vector<RunRecord> Rows(Instant settled, bool paused) && {
    if (paused) {
      AddMissed(settled, now_, "paused");
      return std::move(rows_);
    }
    const Instant late = std::max(settled, now_ - kLate - seconds{1});  // and earlier
    AddLate(settled, late);
    for (const Run& run : NextRuns(timetable_, late, kMostFresh, now_)) AddFresh(run.moment.at);
    return std::move(rows_);
  }

 private:
  static constexpr std::size_t kMostFresh = 100;  // more than a schedule can have in a minute

  RunRecord RowAt(Instant due, RunOrigin origin) const {
    RunRecord row;
    row.task = task_.id;
    row.due = row.not_before = due;
    row.origin = origin;
    return row;
  }

  void AddMissed(Instant after, Instant until, const std::string& reason) {
    const auto first = timetable_.Next(after);
    const auto last = timetable_.Latest(until);
    if (!first || !last || first->moment.at > until) return;
    RunRecord row = RowAt(first->moment.at, RunOrigin::kSchedule);
    row.state = RunState::kMissed;
    row.missed = {first->moment.at, last->moment.at,
                  static_cast<std::int64_t>(CountRuns(timetable_, after, until))};
    row.ended = now_;
    row.reason = reason;
    rows_.push_back(std::move(row));
  }

  void AddLate(Instant settled, Instant late) {
    std::vector<Run> kept;
    switch (state_.policies.missed) {
      case MissedPolicy::kOnce:
        kept = LatestRuns(timetable_, std::max(settled, now_ - kLatestCatchUp - seconds{1}), 1, late);
        break;
      case MissedPolicy::kNone:
        break;
      case MissedPolicy::kAll:
        kept = LatestRuns(timetable_, settled, static_cast<std::size_t>(state_.policies.missed_count), late);
        break;
    }
    AddMissed(settled, kept.empty() ? late : kept.front().moment.at - seconds{1}, "late");
    for (const Run& run : kept) rows_.push_back(RowAt(run.moment.at, RunOrigin::kCatchUp));
  }

  void AddFresh(Instant due) {
    RunRecord row = RowAt(due, RunOrigin::kSchedule);
    if (busy_ && (state_.policies.overlap == OverlapPolicy::kSkip || queued_)) {
      row.state = RunState::kSkipped;
      row.ended = now_;
      row.reason = queued_ ? "queued" : "running";
    } else {
      queued_ = true;
    }
    rows_.push_back(std::move(row));
  }

  const TaskRecord& task_;
  const TaskState& state_;
  const Timetable& timetable_;
  Instant now_;
  bool busy_, queued_;
  std::vector<RunRecord> rows_;
};

// The last instant whose occurrences, if any, are settled: they have a row, or get none.
Instant SettledAt(const TaskRecord& task, const TaskState& state, const Timetable& timetable,
                  const Zone& zone, Instant now, bool changed) {
  if (!changed) {
    if (!state.next_due) return now;
    const auto next = timetable.Next(now);
    const bool set_back = next && *state.next_due > next->moment.at;
    return set_back ? now : *state.next_due - seconds{1};
  }
  Instant settled = std::min(zone.At(task.modified).at, now);
  if (state.planned) settled = std::max(settled, std::min(*state.planned, now));
  // Another policy or zone counts from when it was set.
  return state.next_due && *state.next_due > now ? now : settled;
}

}  // namespace

std::string ScheduleFingerprint(const TaskRecord& task, const TaskPolicies& policies, const Zone& zone) {
  const auto recurrence = ScheduleOf(task);
  if (!recurrence) return {};
  std::string text = zone.Name() + (policies.short_month == ShortMonth::kSkip ? " skip" : "");
  const auto add = [&](std::string_view name, const auto& value) {
    text.append(" ").append(name).append("=");
    if constexpr (std::is_same_v<std::decay_t<decltype(value)>, DateTime>) {
      text += IsoDateTime(value);
    } else if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::array<bool, 7>>) {
      for (const bool day : value) text += day ? '1' : '0';
    } else {
      text += std::to_string(value);
    }
  };
  if (task.schedule_start) text += " from=" + IsoDate(*task.schedule_start);
  ForEachField(kRecurrenceFields,
               [&](std::string_view name, auto field) { add(name, (*recurrence).*field); });
  if (const auto* pattern = ClassOf(recurrence->pattern); pattern != kPatternClasses.end())
    text.append(" ").append(pattern->first);
  ForEachField(kPatternFields, [&](std::string_view name, auto field) {
    if (const auto* value = FieldIn(recurrence->pattern, field)) add(name, *value);
  });
  return text;
}

CursorMove PlanTask(const TaskRecord& task, const TaskState& state, const Zone& zone, Instant now,
                    bool all_paused) {
  CursorMove move;
  move.task = task.id;
  move.from = state.next_due;
  move.version = task.version;
  move.schedule = ScheduleFingerprint(task, state.policies, zone);
  const bool changed = state.schedule != move.schedule;
  move.planned = changed || !state.planned ? now : std::min(*state.planned, now);
  const auto recurrence = ScheduleOf(task);
  if (!recurrence) return move;
  const Schedule schedule(*recurrence, ScheduleStart(task, task.modified), state.policies.short_month);
  const Timetable timetable(schedule, zone);
  const Instant settled = SettledAt(task, state, timetable, zone, now, changed);
  const bool paused = all_paused || state.IsPaused();
  if (const auto last = timetable.Latest(now); last && last->moment.at > settled) {
    move.rows = TaskPlan(task, state, timetable, now).Rows(settled, paused);
    move.planned = last->moment.at;
    move.add_to_paused_row = paused;
  }
  if (const auto next = timetable.Next(std::max(now, settled))) move.to = next->moment.at;
  return move;
}

// If another planner was faster, its rows are those that count.
void PlanNow(TaskStorage& tasks, RunStore& runs, const Zone& zone, std::int64_t id, Instant now) {
  const auto state = runs.State(id);
  const auto task = tasks.Load(id);
  if (!state || !task) return;
  (void)runs.MoveCursor(PlanTask(*task, *state, zone, now, runs.PauseOfAll().has_value()));
}

}  // namespace plovix
