#include "import_task.h"

#include <plovix/base/failure.h>
#include <plovix/host/auto_task.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <plovix/standalone/tasks/task_access.h>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

namespace plovix {
namespace {

void CheckActions(const TaskRecord& task, ImportReport& report) {
  for (std::size_t i = 0; i < task.actions.size(); ++i) {
    const ActionRecord& action = task.actions[i];
    if (FindActionKind(action.kind) == nullptr)
      report.push_back({"exchange.note.action", {std::to_string(i + 1), action.kind}});
  }
}

void CheckDataObject(const std::string& name, DataSource* source, ImportReport& report) {
  if (name.empty() || source == nullptr) return;
  bool found = false;
  const auto failure = FailureOf([&] { found = source->Find(name).has_value(); });
  if (failure) {
    report.push_back({"exchange.note.dataObjectUnknown", {name, failure->Description()}});
  } else if (!found) {
    report.push_back({"exchange.note.dataObject", {name}});
  }
}

void CheckPermissions(TaskRecord& task, const std::vector<UserRecord>& users, ImportReport& report) {
  if (!task.permissions || users.empty()) return;
  std::set<std::string_view> ids, groups;
  for (const UserRecord& user : users) {
    ids.insert(user.id);
    groups.insert(user.groups.begin(), user.groups.end());
  }
  PermissionSet kept;
  for (const PermissionRecord& line : *task.permissions) {
    if ((line.is_group ? groups : ids).contains(line.subject)) {
      kept.push_back(line);
    } else {
      report.push_back({line.is_group ? "exchange.note.group" : "exchange.note.user", {line.subject}});
    }
  }
  // A set for nobody must not become one for everybody, so an empty set is kept.
  if (kept.empty() && !task.permissions->empty()) report.push_back({"exchange.note.nobody", {}});
  task.permissions = kept;
}

// If users are unknown here, everybody may; otherwise someone who is not one of them may not.
bool MayCreate(const ImportTarget& target, bool (*may)(const UserRecord& user)) {
  const auto user = std::ranges::find(target.users, target.user_id, &UserRecord::id);
  return user == target.users.end() ? target.users.empty() : may(*user);
}

void ChooseOwner(TaskRecord& task, bool was_personal, const ImportTarget& target, ImportReport& report) {
  const bool may_own = !target.user_id.empty() && MayCreate(target, MayCreatePersonal);
  const bool may_share = MayCreate(target, MayCreateShared);
  const bool personal = may_own && (was_personal || !may_share);
  if (personal) task.owner = target.user_id;
  if (personal && was_personal) report.push_back({"exchange.note.yours", {}});
  if (personal && !was_personal) report.push_back({"exchange.note.becomesPersonal", {}});
  if (!personal && was_personal) report.push_back({"exchange.note.becomesShared", {}});
}

void CheckSchedule(TaskRecord& task, bool automation_manager, ImportReport& report) {
  if (!task.allow_automation_manager || automation_manager) return;
  TakeFromManager(task);
  report.push_back({"exchange.note.automationManager", {}});
}

void CheckTags(const std::vector<TagRecord>& tags, const std::vector<TagRecord>& here,
               ImportedTask& imported) {
  std::map<std::string_view, const TagRecord*> known;
  for (const TagRecord& tag : here) known.emplace(tag.tag, &tag);
  for (const TagRecord& tag : TagsUsed(imported.task, tags)) {
    const auto found = known.find(tag.tag);
    if (found == known.end()) {
      imported.new_tags.push_back(tag);
    } else if (*found->second != tag) {
      imported.report.push_back({"exchange.note.tag", {tag.tag}});
    }
  }
}

}  // namespace

ImportedTask ForImport(const TaskExport& file, const ImportTarget& target) {
  ImportedTask imported{file.task, {}, {}};
  imported.task.held = true;
  CheckDataObject(imported.task.data_object_name, target.data_source, imported.report);
  CheckActions(imported.task, imported.report);
  CheckSchedule(imported.task, target.automation_manager, imported.report);
  ChooseOwner(imported.task, file.is_personal, target, imported.report);
  CheckPermissions(imported.task, target.users, imported.report);
  CheckTags(file.tags, target.tags, imported);
  return imported;
}

}  // namespace plovix
