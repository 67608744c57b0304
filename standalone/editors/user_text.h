// How lists show a user: name and id. Used by the editors of users and permissions.
#pragma once

#include <plovix/standalone/tasks/user_record.h>
#include <plovix/standalone/text/text_table.h>
#include <plovix/standalone/widgets/qt_text.h>

namespace plovix::app {

[[nodiscard]] inline QString UserText(const TextTable& texts, const UserRecord& user) {
  return ToQt(user.name.empty() ? user.id : texts.Host("user.nameAndId", {user.name, user.id}));
}

}  // namespace plovix::app
