#include "users_and_tags.h"

#include <plovix/base/failure.h>

#include <algorithm>
#include <utility>

#include "text_limits.h"

namespace plovix {
namespace {

[[noreturn]] void Refuse(const std::string& problem) {
  throw Failure(failure_number::kInvalidCall, problem);
}

void CheckUsers(std::vector<UserRecord> users) {
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
          .create_shared = true,
          .run_programs = true};
}

std::map<std::string, UserRecord> UsersById(const std::vector<UserRecord>& users) {
  std::map<std::string, UserRecord> by_id;
  for (const UserRecord& user : users) by_id.emplace(user.id, user);
  return by_id;
}

std::vector<UserRecord> MergedUsers(const std::vector<UserRecord>& users, const std::vector<UserRecord>& read,
                                    const std::vector<UserRecord>& stored) {
  CheckUsers(users);
  const auto mine = UsersById(users), former = UsersById(read);
  MergedRows<UserRecord> merged = MergeRows(former, mine, UsersById(stored));
  const auto administers = [](const auto& row) { return row.second.administrator; };
  if (std::ranges::none_of(merged.rows, administers)) {
    // Each of two people has kept only the administrator that the other removed.
    for (const auto& [id, user] : former) {
      const auto kept = mine.find(id);
      if (user.administrator && (kept == mine.end() || !kept->second.administrator)) {
        merged.conflicts.insert(id);
      }
    }
  }
  if (!merged.conflicts.empty()) {
    throw RowConflict("The users were changed by somebody else since they were read",
                      {merged.conflicts.begin(), merged.conflicts.end()});
  }
  std::vector<UserRecord> result;
  result.reserve(merged.rows.size());
  for (const auto& [id, user] : merged.rows) result.push_back(user);
  return result;
}

TagRecord MergedTag(const TagRecord& tag, const std::map<std::string, std::string>& read_texts,
                    const std::map<std::string, std::string>& stored_texts) {
  if (tag.tag.empty()) Refuse("A language tag cannot be empty");
  CheckLength("The language tag", tag.tag, kLongestName);
  for (const auto& [language, text] : tag.texts)
    CheckLength("The text of the language tag", text, kLongestText);
  MergedRows<std::string> merged = MergeRows(read_texts, tag.texts, stored_texts);
  if (!merged.conflicts.empty()) {
    throw RowConflict("The language tag \"" + tag.tag + "\" was made or changed by somebody else meanwhile",
                      {merged.conflicts.begin(), merged.conflicts.end()});
  }
  return {tag.tag, std::move(merged.rows)};
}

std::vector<TagRecord> MemoryUsersAndTags::Tags() {
  std::vector<TagRecord> tags;
  tags.reserve(tags_.size());
  for (const auto& [tag, texts] : tags_) tags.push_back({tag, texts});
  return tags;
}

void MemoryUsersAndTags::SaveTag(const TagRecord& tag, const std::map<std::string, std::string>& read_texts) {
  const auto found = tags_.find(tag.tag);
  const TagRecord merged =
      MergedTag(tag, read_texts, found == tags_.end() ? std::map<std::string, std::string>() : found->second);
  tags_[merged.tag] = merged.texts;
}

}  // namespace plovix
