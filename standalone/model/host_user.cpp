#include "host_user.h"

#include <plovix/host/host_application.h>
#include <plovix/host/session.h>
#include <plovix/host/value_store.h>

#include "task_access.h"

namespace plovix {

void SetUser(HostState& state, const UserRecord& user) {
  state.user_id = user.id;
  state.session_id = kAutomationAccount;
  for (const int number : {kRightEditCategories, kRightSeeAllCategories, kRightGoOnWithLanguageTags}) {
    state.rights[number] = HasRight(user, number);
  }
  state.has_permission = [user](std::string_view key, const DataObjectRecord* object) {
    return MayUse(user, key, object);
  };
}

std::map<std::string, Value> EntriesFor(const UserRecord& user) {
  return {{store_key::kCreateGroup, user.administrator || user.create_shared},
          {store_key::kCreatePersonal, user.administrator || user.create_personal}};
}

bool MayUse(const UserRecord& user, std::string_view key, const DataObjectRecord* object) {
  if (user.administrator) return true;
  if (object != nullptr && (HasHiddenName(object->name) || object->reads_hidden)) return false;
  if (key == permission_key::kEdit) return user.create_shared || user.create_personal;
  if (key == permission_key::kDelete) return user.create_shared;
  return key == permission_key::kView || key == permission_key::kRun;
}

bool MayReadHidden(const HostState& state) {
  const DataObjectRecord hidden{.name = "_", .caption = {}, .key = {}};
  return !state.has_permission || state.has_permission(permission_key::kView, &hidden);
}

void ReadTags(HostState& state, HostTables& tables, const std::string& code) {
  state.tag_texts.clear();
  for (const TagRecord& tag : tables.Tags()) {
    const auto own = tag.texts.find(code);
    const auto shown = own != tag.texts.end() ? own : tag.texts.begin();
    if (shown != tag.texts.end()) state.tag_texts[tag.tag] = shown->second;
  }
}

}  // namespace plovix
