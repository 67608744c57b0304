// The looking commands, each of which prints one JSON object on one line, and the help.
#include <plovix/standalone/schedule/sentence.h>
#include <plovix/standalone/schedule/task_schedule.h>
#include <plovix/standalone/text/iso_time.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>

#include "commands.h"
#include "offset_text.h"
#include "task_members.h"

namespace plovix::script {
namespace {

using Json = nlohmann::ordered_json;

void Show(ScriptSession& session, const Words& /*words*/) {
  session.Print(PageJson(session.LastWizard()));
}

void Messages(ScriptSession& session, const Words& /*words*/) {
  session.Print({{"messages", session.Dialogs().TakeMessages()}});
}

void Reports(ScriptSession& session, const Words& /*words*/) {
  session.Print({{"reports", session.Dialogs().TakeReports()}});
}

void Task(ScriptSession& session, const Words& /*words*/) {
  session.Print(TaskJson(session.Task(), session.State()));
}

void Store(ScriptSession& session, const Words& /*words*/) {
  session.Print(session.Store());
}

void Saved(ScriptSession& session, const Words& /*words*/) {
  const auto may_view = session.MayView();
  std::set<std::int64_t> ids;  // including unreadable tasks; `task load` says why
  const auto add = [&](const TaskRecord& task) {
    if (may_view(task)) ids.insert(task.id);
  };
  const auto readable =
      session.Storage().ListReadable([&](const UnreadableTask& unreadable) { add(unreadable.task); });
  std::ranges::for_each(readable, add);
  session.Print({{"saved", ids}});
}

void Runs(ScriptSession& session, const Words& words) {
  constexpr int kMost = 10'000;
  const int count = IntegerFrom<int>(words[0]);
  if (count < 1 || count > kMost) throw LineError("the number of runs is from 1 to " + std::to_string(kMost));
  const TaskRecord task = session.Task();
  const TextTable& texts = session.State().texts;
  ManagerScene& scene = session.Automation();
  Outlook outlook{};
  if (task.recurrence)
    outlook = OutlookOf(task, *task.recurrence, scene.Runs().ShortMonthOf(task.id), scene.SchedulesZone(),
                        scene.Now(), static_cast<std::size_t>(count));
  Json list = Json::array();
  for (const Run& run : outlook.runs) {
    const auto note = RunNote(run, texts);
    list.push_back({{"at", IsoDateTime(run.moment.wall) + OffsetText(run.moment.offset)},
                    {"note", note ? Json(*note) : Json()}});
  }
  const std::string sentence = OneLine(InWords(task.recurrence, outlook, texts), texts);
  session.Print({{"sentence", sentence}, {"runs", list}});
}

void Help(ScriptSession& session, const Words& words);

constexpr auto kLookCommands = std::to_array<Command>({
    {"show", "", 0, 0, "the page, its buttons and its controls", Show},
    {"messages", "", 0, 0, "the message boxes shown since last asked", Messages},
    {"reports", "", 0, 0, "the failures reported since last asked", Reports},
    {"task", "", 0, 0, "the task being edited", Task},
    {"store", "", 0, 0, "the shared store", Store},
    {"runs", "N", 1, 1, "the schedule in words and the next N runs", Runs},
    {"saved", "", 0, 0, "the ids of the stored tasks", Saved},
    {"help", "", 0, 0, "this list", Help},
});

constexpr auto kTables = std::to_array<std::span<const Command> (*)()>(
    {SceneCommands, UserCommands, AnswerCommands, ManagerCommands, LookCommands});

// Goes to the messages, because the output is only for JSON.
void Help(ScriptSession& session, const Words& /*words*/) {
  for (const auto table : kTables) {
    for (const Command& command : table()) {
      session.Messages() << command.name << (command.usage.empty() ? "" : " ") << command.usage << "  -  "
                         << command.effect << '\n';
    }
  }
}

const Command* FindCommand(std::string_view name) {
  for (const auto table : kTables) {
    const auto commands = table();
    const auto found = std::ranges::find(commands, name, &Command::name);
    if (found != commands.end()) return &*found;
  }
  return nullptr;
}

// Whether there are commands of two words that begin with this one.
bool BeginsCommands(const std::string& word) {
  return std::ranges::any_of(kTables, [&](const auto table) {
    return std::ranges::any_of(table(),
                               [&](const Command& each) { return each.name.starts_with(word + " "); });
  });
}

}  // namespace

std::span<const Command> LookCommands() {
  return kLookCommands;
}

void RunCommand(ScriptSession& session, const Words& words) {
  if (words.empty()) return;
  const bool two = words.size() > 1 && BeginsCommands(words[0]);
  const std::string name = two ? words[0] + " " + words[1] : words[0];
  const Command* command = FindCommand(name);
  if (command == nullptr) throw LineError("unknown command \"" + name + "\"");
  const Words rest(words.begin() + (two ? 2 : 1), words.end());
  if (rest.size() < command->fewest || rest.size() > command->most) {
    throw LineError("wanted: " + name + " " + std::string(command->usage));
  }
  command->run(session, rest);
}

}  // namespace plovix::script
