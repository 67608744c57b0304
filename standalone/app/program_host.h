// What the windows work on: the task file with its users and tags, the data file, the current user, and the
// host built from them. Owned by the program's main function.
#pragma once

#include <plovix/standalone/runs/task_control.h>
#include <plovix/standalone/storage/sqlite_run_store.h>
#include <plovix/standalone/storage/sqlite_storage.h>
#include <plovix/standalone/storage/sqlite_users_and_tags.h>
#include <plovix/standalone/tasks/users_and_tags.h>

#include <QTimer>
#include <memory>
#include <optional>
#include <string>

#include "app_parts.h"
#include "program_options.h"
#include "qt_dialogs.h"

namespace plovix::app {

class ProgramHost final {
 public:
  // Opens the task file and finds the user in it; creates the sample data if no data file is named and they
  // do not exist yet. Fails with a message if the task file cannot be used or there is no such user;
  // unavailable data are only reported.
  ProgramHost(const ProgramOptions& options, TextTable texts);
  ~ProgramHost();
  ProgramHost(const ProgramHost&) = delete;
  ProgramHost& operator=(const ProgramHost&) = delete;

  [[nodiscard]] AppParts Parts();

 private:
  void OpenData(const std::string& path, bool make_sample);
  void EmptyLogWhenIdle();
  void FileTag(const std::string& tag, const std::string& text);

  HostState state_;
  QtDialogs dialogs_;
  std::unique_ptr<SqliteStorage> storage_;
  std::unique_ptr<SqliteUsersAndTags> tables_;
  std::unique_ptr<SqliteRunStore> runs_;
  QTimer idle_;  // runs out some time after the last change of the task file
  UserRecord user_;
  std::optional<Zone> zone_;  // of the schedules
  std::unique_ptr<TaskControl> control_;
  std::shared_ptr<DataSource> data_;
  std::string data_file_;
  PageRegistry registry_;
};

}  // namespace plovix::app
