#include "service_unit.h"

#include <plovix/base/failure.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

namespace plovix::manager {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kUnitName = "plovix-manager.service";
constexpr std::string_view kCommandKey = "ExecStart=";

[[noreturn]] void RefuseService(const std::string& problem) {
  throw Failure(failure_number::kInvalidCall, problem);
}

std::string Quoted(const std::string& word, bool is_program) {
  std::string quoted = "\"";
  for (const char c : word) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7f')
      RefuseService(word + ": a path with control characters cannot stand in the file of a service");
    if (c == '"' || c == '\\') quoted += '\\';
    if (c == '%' || (c == '$' && !is_program)) quoted += c;
    quoted += c;
  }
  return quoted + '"';
}

std::string EnvironmentText(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

fs::path UnitPath() {
  const std::string configured = EnvironmentText("XDG_CONFIG_HOME"), home = EnvironmentText("HOME");
  if (configured.empty() && home.empty())
    RefuseService("neither XDG_CONFIG_HOME nor HOME says where this user's services stand");
  return (configured.empty() ? fs::path(home) / ".config" : fs::path(configured)) / "systemd" / "user" /
         kUnitName;
}

std::string ContentOf(const fs::path& path) {
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

void WriteUnit(const fs::path& path, const std::string& text) {
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  const fs::path next = path.string() + ".new";
  std::ofstream file(next);
  file << text;
  file.close();
  if (file) fs::rename(next, path, error);
  if (!file || error) RefuseService(path.string() + ": the file cannot be written");
}

using Words = std::vector<std::string>;

// False if the user has no session of the system's services; then it tells what is to be called there.
bool CallAll(const std::vector<Words>& calls) {
  std::error_code error;
  const fs::path session = fs::path(EnvironmentText("XDG_RUNTIME_DIR")) / "systemd" / "private";
  const bool has_session = session.is_absolute() && fs::exists(session, error);
  if (!has_session) std::cout << "There is no session of systemd here. Once there is one, run:\n";
  for (Words words : calls) {
    words.insert(words.begin(), {"systemctl", "--user"});
    for (const std::string& word : words) std::cout << word << (&word == &words.back() ? "\n" : " ");
    if (!has_session) continue;
    std::cout << std::flush;
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_t id = 0;
    int status = 0;
    if (posix_spawnp(&id, pointers.front(), nullptr, nullptr, pointers.data(), environ) != 0)
      RefuseService("systemctl cannot be started");
    waitpid(id, &status, 0);
    if (status != 0)
      RefuseService("systemctl refused; \"systemctl --user status plovix-manager\" may say why");
  }
  return has_session;
}

}  // namespace

std::string UnitFor(const std::vector<std::string>& command) {
  std::string line(kCommandKey);
  for (const std::string& word : command)
    line += (&word == &command.front() ? "" : " ") + Quoted(word, &word == &command.front());
  std::string text(UserUnit());
  const std::size_t begin = text.find(kCommandKey);
  return text.replace(begin, text.find('\n', begin) - begin, line);
}

int InstallService(const std::string& program, const ManagerOptions& options) {
  std::vector<std::string> command{program};
  const auto add = [&command](const char* name, const std::optional<std::string>& file) {
    if (file) command.insert(command.end(), {name, fs::absolute(*file).lexically_normal().string()});
  };
  add("--database", options.database);
  add("--data", options.data);
  add("--secrets", options.secrets);
  const fs::path path = UnitPath();
  const std::string text = UnitFor(command), former = ContentOf(path);
  if (text == former) {
    std::cout << path.string() << " is as it has to be\n";
  } else {
    WriteUnit(path, text);
    std::cout << path.string() << " written\n";
  }
  std::vector<Words> calls{{"daemon-reload"}, {"enable", "--now", std::string(kUnitName)}};
  if (!former.empty() && text != former) calls.push_back({"try-restart", std::string(kUnitName)});
  if (CallAll(calls))
    std::cout
        << "The service runs the tasks while you are logged in; always, after: loginctl enable-linger\n";
  return EXIT_SUCCESS;
}

int RemoveService() {
  const fs::path path = UnitPath();
  if (!fs::exists(path)) {
    std::cout << path.string() << " does not exist; there is nothing to remove\n";
    return EXIT_SUCCESS;
  }
  CallAll({{"disable", "--now", std::string(kUnitName)}});
  fs::remove(path);
  std::cout << path.string() << " removed\n";
  CallAll({{"daemon-reload"}});
  return EXIT_SUCCESS;
}

}  // namespace plovix::manager
