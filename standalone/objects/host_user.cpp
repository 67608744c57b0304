#include "host_user.h"

#include <plovix/base/failure.h>
#include <plovix/host/host_application.h>
#include <plovix/host/session.h>
#include <plovix/host/value_store.h>
#include <plovix/standalone/tasks/task_access.h>

#include <algorithm>
#include <utility>

namespace plovix {

namespace {

// The right to view is checked for every data object in a list, the others only when a task's flags are set.
void SetRights(HostState& state, UsersAndTags& tables, const UserRecord& user) {
  for (const int number : {kRightEditCategories, kRightSeeAllCategories, kRightGoOnWithLanguageTags}) {
    state.rights[number] = HasRight(user, number);
  }
  state.has_permission = [user, &tables](std::string_view key, const DataObjectRecord* object) {
    if (key == permission_key::kView) return MayUse(user, key, object);
    const auto now = UserOf(tables, user.id);
    return now && MayUse(*now, key, object);
  };
}

}  // namespace

std::optional<UserRecord> UserOf(UsersAndTags& tables, const std::string& id) {
  const std::vector<UserRecord> users = tables.Users();
  const auto found = std::ranges::find(users, id, &UserRecord::id);
  return found == users.end() ? std::nullopt : std::optional(*found);
}

UserRecord FindUser(UsersAndTags& tables, const std::optional<std::string>& id, const TextTable& texts) {
  const std::vector<UserRecord> users = tables.Users();
  const auto wanted = [&](const UserRecord& user) { return id ? user.id == *id : user.administrator; };
  const auto found = std::ranges::find_if(users, wanted);
  if (found != users.end()) return *found;
  std::string ids;
  for (const UserRecord& user : users) ids += (ids.empty() ? "" : ", ") + user.id;
  throw Failure(failure_number::kInvalidCall, texts.Host("program.noSuchUser", {id.value_or(""), ids}));
}

void SetUser(HostState& state, UsersAndTags& tables, const UserRecord& user) {
  state.user_id = user.id;
  state.session_id = kAutomationAccount;
  SetRights(state, tables, user);
}

bool RefreshUser(HostState& state, UsersAndTags& tables, UserRecord& user) {
  const auto now = UserOf(tables, user.id);
  user = now.value_or(UserRecord{.id = user.id, .name = "", .groups = {}});
  SetRights(state, tables, user);
  return now.has_value();
}

// If the user may create both kinds of task, "personal" can be switched; a task for the automation manager is
// shared.
std::map<std::string, Value> StartEditing(HostState& state, const UserRecord& user, const TaskRecord& task) {
  const bool stored = task.id != 0;
  const bool shared = stored && task.owner.empty();
  const bool may_share = MayCreateShared(user);
  state.user_id = stored && !task.owner.empty() && user.administrator ? task.owner : user.id;
  state.permissions_locked = stored && !MayChangeAccess(user, task);
  return {{store_key::kCreateGroup, may_share},
          {store_key::kCreatePersonal, MayCreatePersonal(user) && !(state.permissions_locked && may_share)},
          {store_key::kAllowAutomationManager, may_share || shared}};
}

void StopEditing(HostState& state, const UserRecord& user) {
  state.user_id = user.id;
  state.permissions_locked = false;
}

TaskGuard GuardFor(UsersAndTags& tables, std::string user_id, const TextTable& texts) {
  return [&tables, id = std::move(user_id), &texts](const TaskRecord* stored, const TaskRecord* wanted) {
    const auto user = UserOf(tables, id);
    const auto refusal = user ? RefusalOf(*user, stored, wanted) : "rights.noUser";
    if (refusal) throw Failure(failure_number::kInvalidCall, texts.Host(*refusal));
  };
}

bool MayUse(const UserRecord& user, std::string_view key, const DataObjectRecord* object) {
  if (user.administrator) return true;
  if (object != nullptr && (HasHiddenName(object->name) || object->reads_hidden)) return false;
  if (key == permission_key::kEdit) return MayCreateShared(user) || MayCreatePersonal(user);
  if (key == permission_key::kDelete) return MayCreateShared(user);
  return key == permission_key::kView || key == permission_key::kRun;
}

bool MayReadHidden(const HostState& state) {
  const DataObjectRecord hidden{.name = "_", .caption = {}, .key = {}};
  return !state.has_permission || state.has_permission(permission_key::kView, &hidden);
}

void ReadTags(HostState& state, UsersAndTags& tables, const std::string& code) {
  state.tag_texts.clear();
  for (const TagRecord& tag : tables.Tags()) {
    const auto own = tag.texts.find(code);
    const auto shown = own != tag.texts.end() ? own : tag.texts.begin();
    if (shown != tag.texts.end()) state.tag_texts[tag.tag] = shown->second;
  }
}

}  // namespace plovix
