#include "task_members.h"

#include <plovix/standalone/tasks/task_fields.h>
#include <plovix/standalone/text/iso_time.h>

#include <algorithm>
#include <array>
#include <span>

#include "member_value.h"
#include "recurrence_members.h"

namespace plovix::script {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kInRecurrence = "Recurrence.";

struct Member {
  std::string_view name;
  Json (*get)(const TaskRecord& task, const HostState& state);
  void (*set)(TaskRecord& task, HostState& state, const std::string& word);  // nullptr: read-only
};

// A member that is the text of a tag in the current language; setting it sets the tag's text.
template <std::string TaskRecord::*kTag>
constexpr Member TagText(std::string_view name) {
  return {name,
          [](const TaskRecord& task, const HostState& state) -> Json { return state.TagText(task.*kTag); },
          [](TaskRecord& task, HostState& state, const std::string& word) {
            state.tag_texts[task.*kTag] = word;
          }};
}

constexpr std::array kIsExisting{
    Member{"IsExisting",
           [](const TaskRecord& task, const HostState& /*state*/) -> Json { return task.id != 0; }, nullptr}};

// "anna", or "anna: view, run" if some of the rights are missing.
std::string PermissionText(const PermissionRecord& line) {
  const std::array<std::pair<const char*, bool>, 4> rights{
      {{"view", line.view}, {"run", line.run}, {"edit", line.edit}, {"delete", line.erase}}};
  if (std::ranges::all_of(rights, &std::pair<const char*, bool>::second)) return line.subject;
  std::string text;
  for (const auto& [name, granted] : rights) {
    if (granted) text.append(text.empty() ? "" : ", ").append(name);
  }
  return line.subject + ": " + (text.empty() ? "none" : text);
}

Json Permissions(const TaskRecord& task, const HostState& /*state*/) {
  if (!task.permissions) return nullptr;
  std::string text;
  for (const PermissionRecord& line : *task.permissions)
    text.append(text.empty() ? "" : "; ").append(PermissionText(line));
  return text;
}

void SetPermissions(TaskRecord& task, HostState& /*state*/, const std::string& word) {
  task.permissions.reset();
  if (word != kNothing) task.permissions = {{word, false, true, true, true, true}};
}

Json Recurrence(const TaskRecord& task, const HostState& /*state*/) {
  return RecurrenceJson(task.recurrence);
}

void ClearRecurrence(TaskRecord& task, HostState& /*state*/, const std::string& word) {
  if (word != kNothing)
    throw LineError("Recurrence takes nothing; name a member, such as Recurrence.TimeKind");
  task.recurrence.reset();
}

Json ScheduleStart(const TaskRecord& task, const HostState& /*state*/) {
  return task.schedule_start ? Json(IsoDate(*task.schedule_start)) : Json();
}

void SetScheduleStart(TaskRecord& task, HostState& /*state*/, const std::string& word) {
  task.schedule_start = word == kNothing ? std::nullopt : std::optional(DateFrom(word));
}

Json Actions(const TaskRecord& task, const HostState& /*state*/) {
  Json list = Json::array();
  for (const ActionRecord& action : task.actions) {
    Json json = Json::object();
    ForEachField(kActionFields,
                 [&](std::string_view name, auto field) { json[std::string(name)] = action.*field; });
    json["Settings"] = Json::object();
    for (const auto& [key, value] : action.settings) json["Settings"][key] = value;
    list.push_back(json);
  }
  return list;
}

Json Categories(const TaskRecord& task, const HostState& state) {
  Json list = Json::array();
  for (const CategoryRecord& category : task.categories) {
    list.push_back(
        {{"Tag", category.tag}, {"Text", state.TagText(category.tag)}, {"Public", category.is_public}});
  }
  return list;
}

constexpr auto kTagTexts = std::to_array<Member>({
    TagText<&TaskRecord::name_tag>("LocalizedName"),
    TagText<&TaskRecord::short_description_tag>("LocalizedShortDescription"),
    TagText<&TaskRecord::description_tag>("LocalizedDescription"),
});
constexpr auto kParts = std::to_array<Member>({
    {"Permissions", Permissions, SetPermissions},
    {"Recurrence", Recurrence, ClearRecurrence},
    {"ScheduleStart", ScheduleStart, SetScheduleStart},
    {"Actions", Actions, nullptr},
    {"Categories", Categories, nullptr},
});

const Member* FindMember(const std::string& name) {
  for (const std::span<const Member> members :
       {std::span<const Member>(kTagTexts), {kParts}, {kIsExisting}}) {
    const auto found = std::ranges::find(members, name, &Member::name);
    if (found != members.end()) return &*found;
  }
  return nullptr;
}

}  // namespace

Json TaskJson(const TaskRecord& task, const HostState& state) {
  Json json = Json::object();
  const auto add_members = [&](std::span<const Member> members) {
    for (const Member& member : members) json[std::string(member.name)] = member.get(task, state);
  };
  const auto add_field = [&](std::string_view name, auto field) {
    json[std::string(name)] = MemberJson(task.*field);
  };
  add_members(kIsExisting);
  ForEachField(kTaskTextFields, add_field);
  add_members(kTagTexts);
  ForEachField(kTaskSettingFields, add_field);
  ForEachField(kTaskPlaceFields, add_field);
  add_members(kParts);
  return json;
}

void SetTaskMember(TaskRecord& task, HostState& state, const std::string& member, const std::string& word) {
  if (member.starts_with(kInRecurrence)) {
    SetRecurrenceMember(task.recurrence, member.substr(kInRecurrence.size()), word);
    return;
  }
  if (VisitField(kTaskFields, member, [&](auto field) { SetMember(task.*field, word); })) return;
  const Member* found = FindMember(member);
  if (found == nullptr) throw LineError("a task has no member \"" + member + "\"");
  if (found->set == nullptr) throw LineError(member + " cannot be set");
  found->set(task, state, word);
}

}  // namespace plovix::script
