// The commands that set the scene: the task, the shared store, the host.
#include <plovix/standalone/query/sql_template.h>

#include <array>

#include "commands.h"
#include "task_members.h"

namespace plovix::script {
namespace {

void NewTask(ScriptSession& session, const Words& /*words*/) {
  session.BeginTask({});
  session.SceneChanged();
}

void LoadTask(ScriptSession& session, const Words& words) {
  const auto task = session.Storage().Load(IntegerFrom<std::int64_t>(words[0]));
  if (!task) throw LineError("no task is stored under the id " + words[0]);
  if (!session.MayView()(*task)) throw LineError("the user may not view the task " + words[0]);
  session.BeginTask(*task);
  session.SceneChanged();
}

void SetTask(ScriptSession& session, const Words& words) {
  TaskRecord task = session.Task();
  if (words.size() == 3 && words[0] != "Recurrence.Pattern.Day") {
    throw LineError(words[0] + " takes one value; put double quotes around a value with blanks");
  }
  const std::string member = words.size() == 3 ? words[0] + "." + words[1] : words[0];
  SetTaskMember(task, session.State(), member, words.back());
  session.SetTask(task);
  session.SceneChanged();
}

[[noreturn]] void RefuseSetting(const std::string& setting, const std::string& kind_id) {
  throw LineError("\"" + setting + "\" is no setting KEY=VALUE of " + kind_id);
}

// Fills the settings of an action of a known kind from the words KEY=VALUE.
void FillAction(ActionRecord& action, const std::string& kind_id, std::span<const std::string> settings) {
  const ActionKind* kind = FindActionKind(kind_id);
  if (kind == nullptr) throw LineError("there is no kind of action \"" + kind_id + "\"");
  action.kind = kind_id;
  action.settings = NewAction(*kind).settings;
  for (const std::string& setting : settings) {
    const std::size_t sign = setting.find('=');
    const auto found = action.settings.find(setting.substr(0, sign));
    if (sign == std::string::npos || found == action.settings.end()) {
      RefuseSetting(setting, kind_id);
    }
    found->second = setting.substr(sign + 1);
  }
  if (const auto problem = CheckStatementToo(action)) {
    throw LineError("the setting " + std::string(problem->field) + " of " + kind_id + " is missing or unfit");
  }
}

void AddAction(ScriptSession& session, const Words& words) {
  ActionRecord action;
  action.name = words[0];
  action.record_modes = IntegerFrom<std::int32_t>(words[1]);
  action.capabilities = IntegerFrom<std::int32_t>(words[2]);
  if (words.size() > 3) FillAction(action, words[3], std::span(words).subspan(4));
  TaskRecord task = session.Task();
  task.actions.push_back(action);
  session.SetTask(task);
  session.SceneChanged();
}

void AddCategory(ScriptSession& session, const Words& words) {
  if (words.size() == 2 && words[1] != "private") throw LineError("\"" + words[1] + "\" is not \"private\"");
  TaskRecord task = session.Task();
  task.categories.push_back({words[0], words.size() == 1});
  session.SetTask(task);
  session.SceneChanged();
}

Value ValueFrom(const std::string& word) {
  if (word == "nothing") return ObjectRef{};
  if (word == "on" || word == "off") return word == "on";
  if (IsInteger(word)) return IntegerFrom<std::int32_t>(word);
  return word;
}

void SetEntry(ScriptSession& session, const Words& words) {
  session.SetEntry(words[0], ValueFrom(words[1]));
  session.SceneChanged();
}

void SetRight(ScriptSession& session, const Words& words) {
  session.State().rights[IntegerFrom<int>(words[0])] = SwitchFrom(words[1]);
  session.SceneChanged();
}

void SetNow(ScriptSession& session, const Words& words) {
  const auto [now, offset] = ClockTimeFrom(words[0]);
  session.State().clock = [stopped = now] { return stopped; };
  session.State().clock_offset = offset;
  session.SceneChanged();
}

void SetUser(ScriptSession& session, const Words& words) {
  session.NameUser(words[0]);
}

void SetSession(ScriptSession& session, const Words& words) {
  session.State().session_id = words[0];
}

void SetTagMode(ScriptSession& session, const Words& words) {
  session.State().language_tag_mode = SwitchFrom(words[0]);
  session.SceneChanged();
}

void SetMarker(ScriptSession& session, const Words& words) {
  session.State().marker_file = SwitchFrom(words[0]);
  session.SceneChanged();
}

void SetSeparator(ScriptSession& session, const Words& words) {
  if (words[0] != "." && words[0] != ",") throw LineError("the decimal separator is . or ,");
  session.State().decimal_separator = words[0];
  session.SceneChanged();
}

void AddDataObject(ScriptSession& session, const Words& words) {
  MemoryDataSource* named = session.NamedData();
  if (named == nullptr) throw LineError("the data objects are those of the data file");
  named->entries.push_back({{words[0], words[1], words[2]}, {{words[2], FieldType::kText}}});
  session.SceneChanged();
}

void RemoveText(ScriptSession& session, const Words& words) {
  session.State().texts.Remove(IntegerFrom<int>(words[0]));
}

void AddStored(ScriptSession& session, const Words& words) {
  session.AddStoredCategory(words[0]);
}

constexpr auto kSceneCommands = std::to_array<Command>({
    {"task new", "", 0, 0, "begins a new task", NewTask},
    {"task load", "ID", 1, 1, "takes a stored task", LoadTask},
    {"task set", "MEMBER [INDEX] VALUE", 2, 3, "sets a member of the task", SetTask},
    {"task action", "NAME RECORDMODES CAPABILITIES [KIND [KEY=VALUE ...]]", 3, kAnyNumber,
     "appends an action", AddAction},
    {"task category", "TEXT [private]", 1, 2, "appends a category", AddCategory},
    {"store set", "KEY VALUE", 2, 2, "sets an entry of the shared store", SetEntry},
    {"host right", "NUMBER on|off", 2, 2, "gives or takes a right of the user", SetRight},
    {"host now", "DATETIME", 1, 1, "stops the clock at a moment", SetNow},
    {"host user", "ID", 1, 1, "the current user's id", SetUser},
    {"host session", "ID", 1, 1, "the session's own account id", SetSession},
    {"host tagmode", "on|off", 1, 1, "language-tag mode", SetTagMode},
    {"host marker", "on|off", 1, 1, "the marker file's presence", SetMarker},
    {"host separator", ".|,", 1, 1, "the decimal separator", SetSeparator},
    {"host stored", "CATEGORY-COLUMN", 1, 1, "one more stored task row with that column", AddStored},
    {"host dataobject", "NAME CAPTION KEY", 3, 3, "adds a data object to the catalogue", AddDataObject},
    {"host missing", "ID", 1, 1, "the language table lacks that text", RemoveText},
});

}  // namespace

std::span<const Command> SceneCommands() {
  return kSceneCommands;
}

}  // namespace plovix::script
