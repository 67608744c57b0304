/// @file
/// What the stand-alone host stores in addition to the tasks: users with their rights, and the texts of
/// language tags.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "merge_rows.h"
#include "user_record.h"

namespace plovix {

/// A language tag: a name for a text in several languages.
struct TagRecord {
  std::string tag;                           ///< never empty
  std::map<std::string, std::string> texts;  ///< by language code, such as "en"
  bool operator==(const TagRecord&) const = default;
};

/// Every member fails with a Failure whose description tells a person what happened.
class UsersAndTags {
 public:
  virtual ~UsersAndTags() = default;
  /// Sorted by id; there is always an administrator.
  [[nodiscard]] virtual std::vector<UserRecord> Users() = 0;
  /// Stores the differences between `users` and `read`, an earlier result of Users; changes of other users
  /// made meanwhile by somebody else are kept. All or nothing. Fails with 5 if an id is empty or occurs
  /// twice, or no administrator would be left, and with RowConflict by ids if both changed the same user, or
  /// if together they removed the last administrator.
  virtual void SaveUsers(const std::vector<UserRecord>& users, const std::vector<UserRecord>& read) = 0;
  /// By tag.
  [[nodiscard]] virtual std::vector<TagRecord> Tags() = 0;
  /// Stores the differences between `tag` and `read_texts`, its texts in an earlier result of Tags; a new tag
  /// has none. Texts changed meanwhile by somebody else are kept. All or nothing. Fails with 5 on an empty
  /// tag, and with RowConflict by languages if both changed the text in the same language.
  virtual void SaveTag(const TagRecord& tag, const std::map<std::string, std::string>& read_texts) = 0;
};

/// The only user until others are created; it may do everything.
[[nodiscard]] UserRecord FirstAdministrator();
/// By id; only one of several with the same id.
[[nodiscard]] std::map<std::string, UserRecord> UsersById(const std::vector<UserRecord>& users);
/// @{
/// What every implementation of SaveUsers and SaveTag stores in place of `stored`, and how it fails. The
/// users are in the order of their ids.
[[nodiscard]] std::vector<UserRecord> MergedUsers(const std::vector<UserRecord>& users,
                                                  const std::vector<UserRecord>& read,
                                                  const std::vector<UserRecord>& stored);
[[nodiscard]] TagRecord MergedTag(const TagRecord& tag, const std::map<std::string, std::string>& read_texts,
                                  const std::map<std::string, std::string>& stored_texts);
/// @}

/// For scripts and tests; starts with the first administrator and without tags.
class MemoryUsersAndTags final : public UsersAndTags {
 public:
  [[nodiscard]] std::vector<UserRecord> Users() override { return users_; }
  void SaveUsers(const std::vector<UserRecord>& users, const std::vector<UserRecord>& read) override {
    users_ = MergedUsers(users, read, users_);
  }
  [[nodiscard]] std::vector<TagRecord> Tags() override;
  void SaveTag(const TagRecord& tag, const std::map<std::string, std::string>& read_texts) override;

 private:
  std::vector<UserRecord> users_{FirstAdministrator()};
  std::map<std::string, std::map<std::string, std::string>> tags_;
};

}  // namespace plovix
