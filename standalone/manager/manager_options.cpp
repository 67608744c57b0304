#include "manager_options.h"

#include <plovix/base/failure.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace plovix::manager {
namespace {

struct Valued {
  std::string_view name;
  std::optional<std::string> ManagerOptions::*value;
};
struct Switch {
  std::string_view name;
  bool ManagerOptions::*on;
};
constexpr std::array kValued{Valued{"--database", &ManagerOptions::database},
                             Valued{"--data", &ManagerOptions::data},
                             Valued{"--secrets", &ManagerOptions::secrets}};
constexpr std::array kSwitches{Switch{"--once", &ManagerOptions::once},
                               Switch{"--as-root", &ManagerOptions::as_root},
                               Switch{"--accept-data", &ManagerOptions::accept_data},
                               Switch{"--json", &ManagerOptions::json},
                               Switch{"--while-open", &ManagerOptions::while_open},
                               Switch{"--install-service", &ManagerOptions::install_service},
                               Switch{"--remove-service", &ManagerOptions::remove_service},
                               Switch{"--help", &ManagerOptions::help},
                               Switch{"--version", &ManagerOptions::version}};

std::chrono::seconds SecondsIn(const std::string& text) {
  constexpr int kMost = 86'400;
  int seconds = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, seconds);
  if (read.ec != std::errc() || read.ptr != end || seconds < 0 || seconds > kMost)
    throw Failure(failure_number::kInvalidCall, "--drain needs a number of seconds from 0 to 86400");
  return std::chrono::seconds(seconds);
}

}  // namespace

ManagerOptions ParseManagerOptions(const std::vector<std::string>& words) {
  ManagerOptions options;
  std::optional<std::string> drain;
  for (auto word = words.begin(); word != words.end(); ++word) {
    const auto* valued = std::ranges::find(kValued, *word, &Valued::name);
    const auto* on = std::ranges::find(kSwitches, *word, &Switch::name);
    if (on != kSwitches.end()) {
      options.*on->on = true;
    } else if (valued == kValued.end() && *word != "--drain") {
      throw Failure(failure_number::kInvalidCall, "unknown argument: " + *word);
    } else if (std::next(word) == words.end()) {
      throw Failure(failure_number::kInvalidCall, *word + " needs a value");
    } else if (valued == kValued.end()) {
      drain = *++word;
    } else {
      options.*valued->value = *++word;
    }
  }
  if (drain) options.drain = SecondsIn(*drain);
  return options;
}

std::string ManagerUsage() {
  return "plovix-manager [--database FILE] [--data FILE.sqlite] [--secrets FILE] [--once] [--json] [--as-root]\n"
         "               [--accept-data] [--drain SECONDS] [--while-open]\n"
         "    runs the automated tasks of a task file when they are due, until it is ended; prints a line for\n"
         "    each run that begins or ends; default data: the file beside the user's own tasks\n"
         "  --once     runs what is due, waits for its end, and ends\n"
         "  --json     prints JSON Lines\n"
         "  --secrets  lines NAME=VALUE for {secret:NAME}, readable by this user alone\n"
         "  --as-root  runs the programs of tasks as root; without it, root is refused\n"
         "  --accept-data  runs the tasks on these data from now on, though they were run on others before\n"
         "  --drain    how long what runs may go on when the manager is asked to end; 90 without it\n"
         "  --while-open  ends when its standard input does\n"
         "plovix-manager --install-service [--database FILE] [--data FILE.sqlite] [--secrets FILE]\n"
         "    makes it a service of this user, begun with each session, and starts it\n"
         "plovix-manager --remove-service\n"
         "plovix-manager --help | --version\n";
}

}  // namespace plovix::manager
