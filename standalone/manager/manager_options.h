// The command line of plovix-manager.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace plovix::manager {

struct ManagerOptions {
  std::optional<std::string> database;  // task file; nothing: the user's own
  std::optional<std::string> data;      // data file; nothing: that beside the user's own tasks
  std::optional<std::string> secrets;   // file; nothing: no secrets but those of the service
  std::chrono::seconds drain{90};       // what runs has to come to its end when the manager is asked to end
  bool while_open = false;              // ends when its standard input does
  bool install_service = false, remove_service = false;
  bool once = false;  // ends when nothing is due and nothing runs
  bool as_root = false;
  bool accept_data = false;  // from now on, the tasks are run on these data
  bool json = false;
  bool help = false;
  bool version = false;
};

// Reads the words after the program's name. Fails with a message that names the word.
[[nodiscard]] ManagerOptions ParseManagerOptions(const std::vector<std::string>& words);
[[nodiscard]] std::string ManagerUsage();

}  // namespace plovix::manager
