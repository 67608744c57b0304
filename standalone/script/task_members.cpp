#include "task_members.h"

#include <plovix/standalone/model/iso_time.h>

#include <algorithm>
#include <array>

#include "member_value.h"
#include "recurrence_members.h"

namespace plovix::script {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kNothing = "nothing";
constexpr std::string_view kInRecurrence = "Recurrence.";

struct Member {
  std::string_view name;
  Json (*get)(const TaskRecord& task, const HostState& state);
  void (*set)(TaskRecord& task, HostState& state, const std::string& word);  // nullptr: the member only tells
};

// A member that is a field of the record: a text, a Boolean, a number or a moment.
template <auto kField>
constexpr Member Field(std::string_view name) {
  return {
      name, [](const TaskRecord& task, const HostState& /*state*/) { return MemberJson(task.*kField); },
      [](TaskRecord& task, HostState& /*state*/, const std::string& word) { SetMember(task.*kField, word); }};
}

// A member that is the text of a tag in the current language; setting it gives the tag that text.
template <std::string TaskRecord::*kTag>
constexpr Member TagText(std::string_view name) {
  return {name,
          [](const TaskRecord& task, const HostState& state) -> Json { return state.TagText(task.*kTag); },
          [](TaskRecord& task, HostState& state, const std::string& word) {
            state.tag_texts[task.*kTag] = word;
          }};
}

Json IsExisting(const TaskRecord& task, const HostState& /*state*/) {
  return task.id != 0;
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
    Json settings = Json::object();
    for (const auto& [key, value] : action.settings) settings[key] = value;
    list.push_back({{"Name", action.name},
                    {"Kind", action.kind},
                    {"RecordModes", action.record_modes},
                    {"Capabilities", action.capabilities},
                    {"Settings", settings}});
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

constexpr auto kMembers = std::to_array<Member>({
    {"IsExisting", IsExisting, nullptr},
    Field<&TaskRecord::record_mode>("RecordMode"),
    Field<&TaskRecord::uses_language_tags>("UsesLanguageTags"),
    Field<&TaskRecord::name>("Name"),
    Field<&TaskRecord::short_description>("ShortDescription"),
    Field<&TaskRecord::description>("Description"),
    Field<&TaskRecord::name_tag>("NameTag"),
    Field<&TaskRecord::short_description_tag>("ShortDescriptionTag"),
    Field<&TaskRecord::description_tag>("DescriptionTag"),
    TagText<&TaskRecord::name_tag>("LocalizedName"),
    TagText<&TaskRecord::short_description_tag>("LocalizedShortDescription"),
    TagText<&TaskRecord::description_tag>("LocalizedDescription"),
    Field<&TaskRecord::data_object_name>("DataObjectName"),
    Field<&TaskRecord::data_object_caption>("DataObjectCaption"),
    Field<&TaskRecord::allow_automation_manager>("AllowAutomationManager"),
    Field<&TaskRecord::skip_row_selection>("SkipRowSelection"),
    Field<&TaskRecord::processing_mode>("ProcessingMode"),
    Field<&TaskRecord::process_all_records>("ProcessAllRecords"),
    Field<&TaskRecord::process_failed_records>("ProcessFailedRecords"),
    Field<&TaskRecord::base_date>("BaseDate"),
    Field<&TaskRecord::query>("Query"),
    Field<&TaskRecord::owner>("Owner"),
    {"Recurrence", Recurrence, ClearRecurrence},
    {"ScheduleStart", ScheduleStart, SetScheduleStart},
    {"Actions", Actions, nullptr},
    {"Categories", Categories, nullptr},
});

}  // namespace

Json TaskJson(const TaskRecord& task, const HostState& state) {
  Json json = Json::object();
  for (const Member& member : kMembers) json[std::string(member.name)] = member.get(task, state);
  return json;
}

void SetTaskMember(TaskRecord& task, HostState& state, const std::string& member, const std::string& word) {
  if (member.starts_with(kInRecurrence)) {
    SetRecurrenceMember(task.recurrence, member.substr(kInRecurrence.size()), word);
    return;
  }
  const auto* found = std::ranges::find(kMembers, member, &Member::name);
  if (found == kMembers.end()) throw LineError("a task has no member \"" + member + "\"");
  if (found->set == nullptr) throw LineError(member + " cannot be set");
  found->set(task, state, word);
}

}  // namespace plovix::script
