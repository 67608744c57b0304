// The program's command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace plovix::app {

struct ProgramOptions {
  std::optional<std::string> script;       // file to run, "-" for standard input
  std::optional<std::string> screenshots;  // folder for screenshots
  std::optional<std::string> database;     // file; nothing: the user's own
  std::optional<std::string> data;         // SQLite file with the data; nothing: the sample data
  std::optional<std::string> user;         // id of the user; nothing: the first administrator
  std::optional<std::string> language;     // nothing: the user's locale decides
  std::optional<std::string> palette;      // "light" or "dark"; nothing: the desktop decides
  bool no_manager = false;                 // does not run tasks by itself
  bool help = false;
  bool version = false;
};

// Reads the words after the program's name. Fails with a message that names the word.
[[nodiscard]] ProgramOptions ParseOptions(const std::vector<std::string>& words);

[[nodiscard]] std::string Usage();

}  // namespace plovix::app
