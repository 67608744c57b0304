#include "host_tables.h"

#include <plovix/controls/failure.h>

#include <algorithm>

#include "text_limits.h"

namespace plovix {
namespace {

void Refuse(const std::string& problem) {
  throw Failure(failure_number::kInvalidCall, problem);
}

}  // namespace

UserRecord FirstAdministrator() {
  return {.id = "admin",
          .name = "",
          .administrator = true,
          .groups = {},
          .edit_categories = true,
          .see_all_categories = true,
          .go_on_with_tags = true,
          .create_personal = true,
          .create_shared = true};
}

std::vector<UserRecord> CheckedUsers(std::vector<UserRecord> users) {
  std::ranges::sort(users, {}, &UserRecord::id);
  const auto twice = std::ranges::adjacent_find(users, {}, &UserRecord::id);
  if (twice != users.end()) Refuse("There are two users with the id \"" + twice->id + "\"");
  if (!users.empty() && users.front().id.empty()) Refuse("A user needs an id");
  for (const UserRecord& user : users) {
    CheckLength("The id of a user", user.id, kLongestName);
    CheckLength("The name of a user", user.name, kLongestName);
    for (const std::string& group : user.groups) CheckLength("The name of a group", group, kLongestName);
  }
  if (std::ranges::none_of(users, &UserRecord::administrator)) {
    Refuse("One user at least must be an administrator");
  }
  return users;
}

void CheckTag(const TagRecord& tag) {
  if (tag.tag.empty()) Refuse("A language tag cannot be empty");
  CheckLength("The language tag", tag.tag, kLongestName);
  for (const auto& [language, text] : tag.texts)
    CheckLength("The text of the language tag", text, kLongestText);
}

std::vector<TagRecord> MemoryHostTables::Tags() {
  std::vector<TagRecord> tags;
  tags.reserve(tags_.size());
  for (const auto& [tag, texts] : tags_) tags.push_back({tag, texts});
  return tags;
}

void MemoryHostTables::SaveTag(const TagRecord& tag) {
  CheckTag(tag);
  tags_[tag.tag] = tag.texts;
}

}  // namespace plovix
