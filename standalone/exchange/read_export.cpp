#include <plovix/standalone/tasks/action_kinds.h>

#include <algorithm>
#include <utility>

#include "file_value.h"
#include "task_export.h"

namespace plovix {
namespace {

using namespace file_format;

constexpr std::size_t kDeepest = 16;  // levels; the format needs five

CategoryRecord ReadCategory(const FileValue& value) {
  CategoryRecord category;
  FileObject object(value);
  object.ReadFields(kCategoryFields, category);
  object.RefuseOthers();
  return category;
}

PermissionSet ReadPermissions(const FileValue& value) {
  PermissionSet set;
  std::set<std::pair<bool, std::string>> subjects;
  value.ForEachItem([&](const FileValue& item) {
    PermissionRecord line;
    FileObject object(item);
    object.ReadFields(kPermissionFields, line);
    object.RefuseOthers();
    if (line.subject.empty()) object.Take("subject").Refuse("exchange.problem.empty");
    if (!subjects.insert({line.is_group, line.subject}).second)
      object.Take("subject").Refuse("exchange.problem.twice");
    set.push_back(std::move(line));
  });
  return set;
}

PatternRecord ReadPattern(const FileValue& value) {
  if (value.json.is_null()) return {};
  FileObject object(value);
  const FileValue kind = object.Take(kKind);
  std::string name;
  kind.Read(name);
  const auto* found = ClassNamed(name);
  if (found == kPatternClasses.end()) kind.RefuseValue("exchange.problem.pattern");
  PatternRecord pattern = found->second;
  ForEachField(kPatternFields, [&](std::string_view field_name, auto field) {
    if (auto* place = FieldIn(pattern, field)) object.Take(MemberName(field_name)).Read(*place);
  });
  object.RefuseOthers();
  return pattern;
}

std::optional<RecurrenceRecord> ReadRecurrence(const FileValue& value) {
  if (value.json.is_null()) return std::nullopt;
  RecurrenceRecord recurrence;
  FileObject object(value);
  object.ReadFields(kRecurrenceFields, recurrence);
  recurrence.pattern = ReadPattern(object.Take(kPattern));
  object.RefuseOthers();
  return recurrence;
}

ActionRecord ReadAction(const FileValue& value) {
  ActionRecord action;
  FileObject object(value);
  object.ReadFields(kActionFields, action);
  object.Take(kSettings).Read(action.settings);
  object.RefuseOthers();
  return action;
}

void ReadTask(const FileValue& value, TaskExport& file) {
  TaskRecord& task = file.task;
  FileObject object(value);
  object.ReadFields(kTaskTextFields, task);
  object.ReadFields(kTaskSettingFields, task);
  object.Take(kPersonal).Read(file.is_personal);
  object.Take(kCategories).ForEachItem([&](const FileValue& item) {
    task.categories.push_back(ReadCategory(item));
  });
  const FileValue permissions = object.Take(kPermissions);
  if (!permissions.json.is_null()) task.permissions = ReadPermissions(permissions);
  task.recurrence = ReadRecurrence(object.Take(kRecurrence));
  object.Take(kScheduleStart).Read(task.schedule_start);
  object.Take(kActions).ForEachItem([&](const FileValue& item) { task.actions.push_back(ReadAction(item)); });
  object.RefuseOthers();
}

// In the first version, braces in the texts of actions had no meaning.
constexpr std::int64_t kWithoutPlaceholders = 1;

// Taken before anything else, because a newer file may contain anything else.
std::int64_t TakeVersion(FileObject& object) {
  const FileValue format = object.Take(kFormat);
  if (!format.json.is_string() || format.json.get_ref<const std::string&>() != kName)
    format.Refuse("exchange.problem.noExport");
  const FileValue version = object.Take(kFileVersion);
  // Even a number too large for our types.
  if (version.json.is_number() && version.json > kVersion)
    version.RefuseValue("exchange.problem.newer", {std::to_string(kVersion)});
  std::int64_t number = 0;
  version.Read(number);
  if (number < kWithoutPlaceholders)
    version.RefuseValue("exchange.problem.version", {std::to_string(kVersion)});
  return number;
}

}  // namespace

TaskExport ReadExport(std::string_view text, const std::string& name, const TextTable& texts) {
  const FileSource source{texts, name};
  if (text.size() > kLargestExport)
    source.Refuse("exchange.problem.tooLarge", {std::to_string(kLargestExport / 1024 / 1024)});
  const nlohmann::json json = ParseStrict(text, kDeepest, source);
  if (!json.is_object()) source.Refuse("exchange.problem.noExport", {std::string(kFormat)});
  TaskExport file;
  FileObject object({json, "", source});
  const std::int64_t version = TakeVersion(object);
  ReadTask(object.Take(kTask), file);
  if (version == kWithoutPlaceholders) std::ranges::for_each(file.task.actions, DoubleBraces);
  object.Take(kTags).ForEachMember([&](const std::string& tag, const FileValue& value) {
    file.tags.push_back({tag, {}});
    value.Read(file.tags.back().texts);
    if (tag.empty() || file.tags.back().texts.contains("")) value.Refuse("exchange.problem.empty");
  });
  object.RefuseOthers();
  return file;
}

}  // namespace plovix
