/// @file
/// What the stand-alone host keeps beside the tasks: users with their rights, and the texts of language tags.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "account_record.h"

namespace plovix {

/// A language tag: a name for a text in several languages.
struct TagRecord {
  std::string tag;                           ///< never empty
  std::map<std::string, std::string> texts;  ///< by language code, such as "en"
  bool operator==(const TagRecord&) const = default;
};

/// Every member fails with a Failure whose description tells a person what happened.
class HostTables {
 public:
  virtual ~HostTables() = default;
  /// By id; never without an administrator.
  [[nodiscard]] virtual std::vector<UserRecord> Users() = 0;
  /// Replaces all users, all or nothing. Fails with 5 when no administrator would be left, or an id is empty
  /// or stands twice.
  virtual void SaveUsers(const std::vector<UserRecord>& users) = 0;
  /// By tag.
  [[nodiscard]] virtual std::vector<TagRecord> Tags() = 0;
  /// Stores a new tag, or replaces the texts of a stored one; all or nothing. Fails with 5 on an empty tag.
  virtual void SaveTag(const TagRecord& tag) = 0;
};

/// The one user that there is before any other was made; it may do everything.
[[nodiscard]] UserRecord FirstAdministrator();
/// What every implementation refuses, with 5; the users come back in the order of their ids.
[[nodiscard]] std::vector<UserRecord> CheckedUsers(std::vector<UserRecord> users);
/// The same of a tag.
void CheckTag(const TagRecord& tag);

/// For scripts and tests; starts with the first administrator and without tags.
class MemoryHostTables final : public HostTables {
 public:
  [[nodiscard]] std::vector<UserRecord> Users() override { return users_; }
  void SaveUsers(const std::vector<UserRecord>& users) override { users_ = CheckedUsers(users); }
  [[nodiscard]] std::vector<TagRecord> Tags() override;
  void SaveTag(const TagRecord& tag) override;

 private:
  std::vector<UserRecord> users_{FirstAdministrator()};
  std::map<std::string, std::map<std::string, std::string>> tags_;
};

}  // namespace plovix
