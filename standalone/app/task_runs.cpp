#include "task_runs.h"

#include <plovix/standalone/runs/run_words.h>

#include <algorithm>
#include <limits>

#include "date_text.h"

namespace plovix::app {
namespace {

// Beside times, which are seconds since 1970.
constexpr std::int64_t kTop = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kBottom = std::numeric_limits<std::int64_t>::max();

std::int64_t OrderOfTime(Instant at) {
  return at.time_since_epoch().count();
}

// Distances of less than a minute are told in seconds.
bool IsNear(Instant at, Instant now) {
  return std::chrono::abs(at - now) < std::chrono::minutes{1};
}

std::string ExactTime(const AppParts& parts, Instant at) {
  const DateTime wall = parts.zone.WallAt(at);
  return parts.Text("summary.run", {FromQt(QLocale().toString(WallTime(wall).date(), QLocale::LongFormat)),
                                    LocaleTime(wall), std::string(parts.zone.PeriodAt(at).abbreviation)});
}

// With the day if it is another one than that of `now`.
std::string ShortTime(const AppParts& parts, Instant at, Instant now) {
  const QDateTime wall = WallTime(parts.zone.WallAt(at));
  if (wall.date() == WallTime(parts.zone.WallAt(now)).date()) return LocaleTime(parts.zone.WallAt(at));
  return FromQt(QLocale().toString(wall, QLocale::ShortFormat));
}

bool NeedsALook(const RunRecord& run) {
  switch (run.state) {
    case RunState::kFailed:
    case RunState::kPartly:
    case RunState::kInterrupted:
    case RunState::kMissed:
      return true;
    case RunState::kWaiting:
    case RunState::kRunning:
      return run.failures > 0;
    case RunState::kSucceeded:
    case RunState::kCancelled:
    case RunState::kSkipped:
      break;
  }
  return false;
}

// When it ended; of what never began: when it was due.
Instant EndOf(const RunRecord& run) {
  if (run.ended) return *run.ended;
  return run.missed ? run.missed->to : run.due.value_or(run.not_before);
}

// Of the run under way; nothing if there is none.
std::optional<Instant> BeganAt(const TaskRuns& runs) {
  return runs.running ? runs.running->started : std::nullopt;
}

// Without a schedule, a pause of everything is nothing to it.
bool IsPaused(const TaskRuns& runs, const std::optional<Pause>& all, std::optional<Instant> next) {
  return runs.state.IsPaused() || (all && next);
}

// What the run waits for, as a whole sentence.
std::string WaitInWords(const AppParts& parts, const RunRecord& run, const TaskRuns& runs) {
  if (run.cancel) return parts.Text("list.last.ending");
  if (run.state != RunState::kWaiting || run.IsRetrying()) return {};
  return parts.Text(runs.running ? "list.last.waitsForOther" : "list.last.waitsForManager");
}

}  // namespace

const RunRecord* TaskRuns::Open() const {
  if (running) return &*running;
  return latest && !latest->IsOver() ? &*latest : nullptr;
}

const TaskRuns& RunsOfTasks::Of(std::int64_t task) const {
  static const TaskRuns none;
  const auto found = of.find(task);
  return found == of.end() ? none : found->second;
}

RunsOfTasks ReadRuns(RunStore& store) {
  RunsOfTasks runs;
  for (TaskState& state : store.States()) runs.of[state.task].state = std::move(state);
  for (RunRecord& run : store.LatestOfEach()) runs.of[run.task].latest = std::move(run);
  for (auto& [task, of_task] : runs.of) {
    const std::int64_t running = of_task.state.running_run;
    if (running == 0) continue;
    of_task.running = of_task.latest && of_task.latest->id == running ? of_task.latest : store.Run(running);
  }
  runs.all_paused = store.PauseOfAll();
  return runs;
}

RunCell NextCell(const AppParts& parts, const TaskRuns& runs, const std::optional<Pause>& all,
                 std::optional<Instant> next, Instant now) {
  RunCell cell;
  cell.order = kBottom;
  if (BeganAt(runs)) {
    cell.text = parts.Shown("list.next.running", {ShortTime(parts, *BeganAt(runs), now)});
    cell.order = kTop;
  } else if (IsPaused(runs, all, next)) {
    cell.text = parts.Shown(runs.state.held ? "list.next.held" : "list.next.paused");
    cell.order = kBottom - 1;
  } else if (next) {
    cell.text = ToQt(DistanceInWords(*next, now, parts.state.texts));
    cell.order = OrderOfTime(*next);
    cell.counts_seconds = IsNear(*next, now);
  }
  return cell;
}

QString NextTip(const AppParts& parts, const TaskRuns& runs, const std::optional<Pause>& all,
                std::optional<Instant> next) {
  if (BeganAt(runs)) return ToQt(ExactTime(parts, *BeganAt(runs)));
  if (runs.state.held) return parts.Shown("list.heldTip");
  if (runs.state.paused)
    return PauseInWords(parts, "list.pausedTip", "list.pausedTipWhy", *runs.state.paused);
  if (IsPaused(runs, all, next))
    return PauseInWords(parts, "list.pausedAllTip", "list.pausedAllTipWhy", *all);
  return next ? ToQt(ExactTime(parts, *next)) : QString();
}

RunCell LastCell(const AppParts& parts, const TaskRuns& runs, Instant now) {
  const TextTable& texts = parts.state.texts;
  RunCell cell;
  cell.order = kTop;
  if (!runs.latest) {
    cell.text = parts.Shown("list.last.never");
    return cell;
  }
  const RunRecord& run = *runs.latest;
  std::vector<std::string> words{StateInWords(run, texts)};
  if (run.IsOver()) {
    words.push_back(DistanceInWords(EndOf(run), now, texts));
    cell.order = OrderOfTime(EndOf(run));
    cell.counts_seconds = IsNear(EndOf(run), now);
  } else {
    cell.order = run.state == RunState::kRunning ? kBottom : kBottom - 1;
    cell.counts_seconds = run.state == RunState::kRunning;
    if (run.IsRetrying() && run.not_before > now) {
      words.push_back(DistanceInWords(run.not_before, now, texts));
      cell.counts_seconds = IsNear(run.not_before, now);
    }
  }
  if (run.started && run.state != RunState::kWaiting) words.push_back(DurationInWords(run, now, texts));
  cell.text = Joined(words, ToQt);
  cell.is_bad = NeedsALook(run);
  return cell;
}

QString LastTip(const AppParts& parts, const TaskRuns& runs) {
  if (!runs.latest) return {};
  const TextTable& texts = parts.state.texts;
  const RunRecord& run = *runs.latest;
  std::string tip = StateInWords(run, texts);
  if (run.IsOver()) tip = parts.Text("list.last.at", {tip, ExactTime(parts, EndOf(run))});
  for (const std::string& line :
       {OriginInWords(run, texts), WaitInWords(parts, run, runs), ReasonInWords(run, texts)})
    if (!line.empty()) tip += "\n" + line;
  return ToQt(tip);
}

QString PauseInWords(const AppParts& parts, std::string_view key, std::string_view with_reason,
                     const Pause& pause) {
  std::vector<std::string> parameters{ExactTime(parts, pause.since), pause.person};
  const std::string reason = ReasonInWords(pause, parts.state.texts);
  if (pause.person.empty()) return ToQt(reason);  // the manager's own sentence
  if (reason.empty()) return parts.Shown(key, parameters);
  parameters.push_back(InSentence(reason));
  return parts.Shown(with_reason, parameters);
}

}  // namespace plovix::app
