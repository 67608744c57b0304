// The commands of the automation manager: time, data, policies, what a person asks for, and what came of it.
#include <plovix/base/failure.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "manager_scene.h"

namespace plovix::script {
namespace {

using Json = nlohmann::ordered_json;

void AdvanceManager(ScriptSession& session, const Words& words) {
  ManagerScene& scene = session.Automation();
  scene.Advance(scene.InstantAt(ClockTimeFrom(words[0])));
  session.SceneChanged();
}

void TakeManagerDown(ScriptSession& session, const Words& words) {
  ManagerScene& scene = session.Automation();
  scene.Down(scene.InstantAt(ClockTimeFrom(words[0])));
  session.SceneChanged();
}

void CrashManager(ScriptSession& session, const Words& /*words*/) {
  session.Automation().Actions().crashes = true;
}

int CountFrom(const std::string& word) {
  const auto count = IntegerFrom<std::int32_t>(word);
  if (count < 0) throw LineError("\"" + word + "\" is less than 0");
  return count;
}

void SetActionTime(ScriptSession& session, const Words& words) {
  session.Automation().Actions().takes = std::chrono::seconds{CountFrom(words[0])};
}

void FailActions(ScriptSession& session, const Words& words) {
  session.Automation().Actions().fails = CountFrom(words[0]);
}

// The id of a stored task that the working user may treat so.
std::int64_t TaskFrom(ScriptSession& session, const std::string& word, TaskRight right) {
  const auto id = IntegerFrom<std::int64_t>(word);
  const auto task = session.Storage().Load(id);
  if (!task) throw LineError("no task is stored under the id " + word);
  if (!session.MayTreat(right)(*task)) throw LineError("the user may not do that with the task " + word);
  return id;
}

template <class Value, std::size_t kCount>
Value OneOf(const std::array<std::pair<std::string_view, Value>, kCount>& words, const std::string& word) {
  const auto found = std::ranges::find(words, word, &std::pair<std::string_view, Value>::first);
  if (found != words.end()) return found->second;
  std::string all;
  for (const auto& [name, value] : words) all.append(all.empty() ? "" : ", ").append(name);
  throw LineError("\"" + word + "\" is not one of " + all);
}

void SetPolicy(TaskPolicies& policies, const std::string& name, const Words& values) {
  const std::string& value = values.front();
  if ((values.size() == 2) != (name == "missed" && value == "all"))
    throw LineError("the policy takes another number of words");
  if (name == "missed") {
    policies.missed = OneOf(
        std::to_array<std::pair<std::string_view, MissedPolicy>>(
            {{"once", MissedPolicy::kOnce}, {"none", MissedPolicy::kNone}, {"all", MissedPolicy::kAll}}),
        value);
    if (policies.missed == MissedPolicy::kAll) policies.missed_count = std::max(CountFrom(values[1]), 1);
  } else if (name == "overlap") {
    policies.overlap = OneOf(std::to_array<std::pair<std::string_view, OverlapPolicy>>(
                                 {{"skip", OverlapPolicy::kSkip}, {"queue", OverlapPolicy::kQueue}}),
                             value);
  } else if (name == "interrupted") {
    policies.interrupted =
        OneOf(std::to_array<std::pair<std::string_view, InterruptedPolicy>>(
                  {{"repeat", InterruptedPolicy::kRepeat}, {"leave", InterruptedPolicy::kLeave}}),
              value);
  } else if (name == "short-month") {
    policies.short_month = OneOf(std::to_array<std::pair<std::string_view, ShortMonth>>(
                                     {{"last", ShortMonth::kLast}, {"skip", ShortMonth::kSkip}}),
                                 value);
  } else if (name == "retries") {
    policies.retries = CountFrom(value);
  } else if (name == "limit") {
    policies.limit = std::chrono::seconds{CountFrom(value)};
  } else {
    throw LineError("there is no policy \"" + name + "\"");
  }
}

void ChoosePolicy(ScriptSession& session, const Words& words) {
  const std::int64_t task = TaskFrom(session, words[0], TaskRight::kEdit);
  TaskPolicies policies = session.Automation().Runs().State(task)->policies;
  SetPolicy(policies, words[1], {words.begin() + 2, words.end()});
  session.Automation().Control().SetPolicies(task, policies);
}

// Digits alone are a whole number, everything else is a text.
FieldValue FieldFrom(const std::string& word) {
  const bool digits = !word.empty() && std::ranges::all_of(word, [](char c) { return c >= '0' && c <= '9'; });
  if (digits) return IntegerFrom<std::int64_t>(word);
  return word;
}

template <RunOrigin kOrigin>
void StartTask(ScriptSession& session, const Words& words) {
  std::vector<std::string> keys;
  for (std::size_t i = 1; i < words.size(); ++i) keys.push_back(KeyOf(FieldFrom(words[i])));
  session.Automation().Control().Start(TaskFrom(session, words[0], TaskRight::kRun), kOrigin,
                                       std::move(keys));
}

void StopRun(ScriptSession& session, const Words& words) {
  session.Automation().Cancel(IntegerFrom<std::int64_t>(words[0]));
}

template <bool kPaused>
void PauseTask(ScriptSession& session, const Words& words) {
  const auto task =
      words[0] == "all" ? std::nullopt : std::optional(TaskFrom(session, words[0], TaskRight::kEdit));
  TaskControl control = session.Automation().Control();
  if (kPaused) {
    control.Pause(task, "");
  } else {
    control.Resume(task);
  }
}

void SetData(ScriptSession& session, const Words& words) {
  if (session.NamedData() == nullptr) throw LineError("the records are those of the data file");
  MemoryRecords& records = session.Automation().Records();
  const FieldValue key = FieldFrom(words[1]);
  try {
    if (words.size() == 3 && words[2] == "gone") return records.Remove(words[0], key);
    RecordValues values;
    for (std::size_t i = 2; i < words.size(); ++i) {
      const std::size_t sign = words[i].find('=');
      if (sign == std::string::npos || sign == 0)
        throw LineError("\"" + words[i] + "\" is not FIELD=VALUE or gone");
      values.push_back({words[i].substr(0, sign), FieldFrom(words[i].substr(sign + 1))});
    }
    records.Put(words[0], key, values);
  } catch (const Failure& failure) {
    throw LineError(failure.Description());
  }
}

Json RunJson(const RunRecord& run, const ManagerScene& scene) {
  const auto time = [&](const std::optional<Instant>& at) { return at ? Json(scene.TimeText(*at)) : Json(); };
  Json json{{"run", run.id},
            {"task", run.task},
            {"due", time(run.due)},
            {"origin", kRunOriginNames.at(IndexOf(run.origin))},
            {"state", kRunStateNames.at(IndexOf(run.state))},
            {"attempt", run.attempt},
            {"started", time(run.started)},
            {"ended", time(run.ended)},
            {"reason", run.reason},
            {"records",
             {{"found", run.records.found},
              {"done", run.records.done},
              {"failed", run.records.failed},
              {"skipped", run.records.skipped}}}};
  if (run.missed) {
    json["from"] = time(run.missed->from);
    json["to"] = time(run.missed->to);
    json["count"] = run.missed->count;
  }
  if (run.IsDry() && !run.planned.empty()) json["planned"] = Json::parse(run.planned);
  return json;
}

void History(ScriptSession& session, const Words& words) {
  std::optional<std::int64_t> task;
  if (!words.empty()) task = IntegerFrom<std::int64_t>(words[0]);
  Json list = Json::array();
  for (const RunRecord& run : session.Automation().Runs().History(task))
    list.push_back(RunJson(run, session.Automation()));
  session.Print({{"history", list}});
}

void Executed(ScriptSession& session, const Words& /*words*/) {
  session.Print({{"executed", session.Automation().Actions().TakeExecuted()}});
}

// As the records come: whole numbers before texts, 2 before 10. A record that is under way has no state yet.
void Ledger(ScriptSession& session, const Words& words) {
  Json list = Json::array();
  auto rows = session.Automation().Runs().Ledger(IntegerFrom<std::int64_t>(words[0]));
  std::ranges::stable_sort(rows, {}, [](const LedgerRow& row) {
    return row.record.starts_with("i:") ? std::pair(0, row.record.size()) : std::pair(1, std::size_t{});
  });
  for (const LedgerRow& row : rows)
    if (row.state != LedgerState::kBegun)
      list.push_back({{"record", row.record}, {"state", kLedgerStateNames.at(IndexOf(row.state))}});
  session.Print({{"ledger", list}});
}

constexpr auto kManagerCommands = std::to_array<Command>({
    {"manager advance", "DATETIME", 1, 1,
     "a manager lives from the host's now to then, which becomes the host's now", AdvanceManager},
    {"manager down", "DATETIME", 1, 1, "the manager is stopped, and time goes on to then without one",
     TakeManagerDown},
    {"manager crash", "", 0, 0, "the next action begun is the last thing that the manager does",
     CrashManager},
    {"action takes", "SECONDS", 1, 1, "how long each action takes from now on", SetActionTime},
    {"action fails", "N", 1, 1, "the next N actions fail", FailActions},
    {"policy",
     "ID missed once|none|all N, overlap skip|queue, retries N, interrupted repeat|leave, short-month last|skip, limit SECONDS",
     3, 4, "a policy of a stored task", ChoosePolicy},
    {"start", "ID [KEY...]", 1, kAnyNumber, "asks for a run, on the chosen records",
     StartTask<RunOrigin::kManual>},
    {"dryrun", "ID", 1, 1, "asks for a run that only says what it would do", StartTask<RunOrigin::kDryRun>},
    {"stop", "RUN", 1, 1, "cancels a run", StopRun},
    {"pause", "ID|all", 1, 1, "nothing that is scheduled is run", PauseTask<true>},
    {"resume", "ID|all", 1, 1, "ends the pause, without catching up", PauseTask<false>},
    {"data", "OBJECT KEY FIELD=VALUE...|gone", 3, kAnyNumber,
     "adds, changes or removes a record of a data object", SetData},
    {"history", "[ID]", 0, 1, "the runs, oldest first", History},
    {"executed", "", 0, 0, "every action begun since last asked", Executed},
    {"ledger", "ID", 1, 1, "what is known of the task and each record", Ledger},
});

}  // namespace

std::span<const Command> ManagerCommands() {
  return kManagerCommands;
}

}  // namespace plovix::script
