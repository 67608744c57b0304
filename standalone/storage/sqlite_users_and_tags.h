// Users and language tags in the task file. Used by the program.
//
// With its own connection: so it needs no SqliteStorage, neither one's statements can get into the other's
// transaction, and each can be closed separately. Writers wait for each other like two programs.
#pragma once

#include <plovix/standalone/tasks/users_and_tags.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "task_file.h"

namespace plovix {

// To be used by the thread that made it.
class SqliteUsersAndTags final : public UsersAndTags {
 public:
  // Opens or creates the file, as OpenTaskFile does.
  explicit SqliteUsersAndTags(const std::string& path,
                              std::chrono::milliseconds patience = kTaskFilePatience);

  [[nodiscard]] std::vector<UserRecord> Users() override;
  void SaveUsers(const std::vector<UserRecord>& users, const std::vector<UserRecord>& read) override;
  [[nodiscard]] std::vector<TagRecord> Tags() override;
  void SaveTag(const TagRecord& tag, const std::map<std::string, std::string>& read_texts) override;

  // As Connection::OnWritten.
  void OnWritten(std::function<void()> told) { file_->OnWritten(std::move(told)); }

 private:
  std::unique_ptr<Connection> file_;
};

}  // namespace plovix
