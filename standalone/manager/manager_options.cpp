#include "manager_options.h"

#include <plovix/base/failure.h>

#include <algorithm>
#include <array>

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
                               Switch{"--help", &ManagerOptions::help},
                               Switch{"--version", &ManagerOptions::version}};

}  // namespace

ManagerOptions ParseManagerOptions(const std::vector<std::string>& words) {
  ManagerOptions options;
  for (auto word = words.begin(); word != words.end(); ++word) {
    const auto* valued = std::ranges::find(kValued, *word, &Valued::name);
    const auto* on = std::ranges::find(kSwitches, *word, &Switch::name);
    if (on != kSwitches.end()) {
      options.*on->on = true;
    } else if (valued == kValued.end()) {
      throw Failure(failure_number::kInvalidCall, "unknown argument: " + *word);
    } else if (std::next(word) == words.end()) {
      throw Failure(failure_number::kInvalidCall, *word + " needs a value");
    } else {
      options.*valued->value = *++word;
    }
  }
  return options;
}

std::string ManagerUsage() {
  return "plovix-manager [--database FILE] [--data FILE.sqlite] [--secrets FILE] [--once] [--json] [--as-root]\n"
         "               [--accept-data]\n"
         "    runs the automated tasks of a task file when they are due, until it is ended; prints a line for\n"
         "    each run that begins or ends; default data: the file beside the user's own tasks\n"
         "  --once     runs what is due, waits for its end, and ends\n"
         "  --json     prints JSON Lines\n"
         "  --secrets  lines NAME=VALUE for {secret:NAME}, readable by this user alone\n"
         "  --as-root  runs the programs of tasks as root; without it, root is refused\n"
         "  --accept-data  runs the tasks on these data from now on, though they were run on others before\n";
}

}  // namespace plovix::manager
