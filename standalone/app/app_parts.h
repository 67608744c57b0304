// What every window of the program works with.
#pragma once

#include <plovix/component/page_registry.h>
#include <plovix/host/host_application.h>
#include <plovix/standalone/objects/host_state.h>
#include <plovix/standalone/runs/task_control.h>
#include <plovix/standalone/tasks/task_storage.h>
#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/widgets/qt_text.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace plovix::app {

// References to objects of main(), which outlive every window.
struct AppParts {
  HostState& state;
  const PageRegistry& registry;
  TaskStorage& storage;
  UsersAndTags& tables;
  UserRecord& user;                  // who works with the program
  std::shared_ptr<DataSource> data;  // without stand-ins; never null
  RunStore& runs;
  TaskControl& control;        // on the user's behalf
  Zone zone;                   // in which tasks run
  std::string data_file = {};  // of `data`; empty: they are in memory
  std::string task_file = {};  // of the tasks; likewise
  // Stores another zone of the schedules, by its name; empty: they have to keep theirs.
  std::function<void(const std::string& zone)> set_zone = {};

  [[nodiscard]] std::string Text(std::string_view key,
                                 const std::vector<std::string>& parameters = {}) const {
    return state.texts.Host(key, parameters);
  }
  [[nodiscard]] QString Shown(std::string_view key, const std::vector<std::string>& parameters = {}) const {
    return ToQt(Text(key, parameters));
  }
};

// Tells a sentence of the host's in a box with OK: a warning unless said otherwise.
void TellUser(const HostState& state, std::string_view text, const std::vector<std::string>& parameters,
              int buttons = message_box::kOkWarning);
// Runs `work`; shows a failure in the sentence `text`, as its parameter. Returns whether it succeeded.
bool DoOrTell(const HostState& state, std::string_view text, const std::function<void()>& work);

// The name of a task: its text in the current language, or a stand-in if it has none.
[[nodiscard]] inline std::string TaskName(const AppParts& parts, const TaskRecord& task) {
  const std::string name = task.uses_language_tags ? parts.state.TagText(task.name_tag) : task.name;
  return name.empty() ? parts.Text("list.unnamed") : name;
}

// A name as far as a sentence has room for it.
[[nodiscard]] std::string InSentence(const std::string& name);

}  // namespace plovix::app
