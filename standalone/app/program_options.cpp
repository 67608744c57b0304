#include "program_options.h"

#include <plovix/base/failure.h>

#include <algorithm>
#include <string_view>

namespace plovix::app {
namespace {

struct Option {
  std::string_view name;
  std::optional<std::string> ProgramOptions::*value;
};
constexpr Option kOptions[] = {
    {"--database", &ProgramOptions::database}, {"--data", &ProgramOptions::data},
    {"--user", &ProgramOptions::user},         {"--language", &ProgramOptions::language},
    {"--palette", &ProgramOptions::palette},   {"--screenshots", &ProgramOptions::screenshots}};

[[noreturn]] void Refuse(const std::string& problem) {
  throw Failure(failure_number::kInvalidCall, problem);
}

}  // namespace

ProgramOptions ParseOptions(const std::vector<std::string>& words) {
  ProgramOptions options;
  auto word = words.begin();
  const auto value = [&]() -> std::string {
    const std::string name = *word;
    if (++word == words.end()) Refuse(name + " needs a value");
    return *word;
  };
  for (; word != words.end(); ++word) {
    const auto option = std::ranges::find(kOptions, *word, &Option::name);
    if (option != std::end(kOptions)) {
      options.*option->value = value();
    } else if (*word == "--help") {
      options.help = true;
    } else if (*word == "--no-manager") {
      options.no_manager = true;
    } else if (*word == "--version") {
      options.version = true;
    } else if (*word == "script" && !options.script) {
      options.script = value();
    } else {
      Refuse("unknown argument: " + *word);
    }
  }
  if (options.palette && options.palette != "light" && options.palette != "dark")
    Refuse("--palette is light or dark");
  return options;
}

std::string Usage() {
  return "plovix [--database FILE] [--data FILE.sqlite] [--user ID] [--language CODE|FILE.json]\n"
         "       [--palette light|dark] [--no-manager]\n"
         "    opens the list of automated tasks, and runs them while nobody else does; default data: a sample;\n"
         "    default user: the first administrator; --no-manager: runs no tasks by itself\n"
         "plovix script FILE|- [--database FILE] [--data FILE.sqlite] [--user ID]\n"
         "       [--language CODE|FILE.json|ids]\n"
         "    runs a wizard script; prints JSON Lines; without --user everything is allowed\n"
         "plovix --screenshots DIR\n"
         "    saves screenshots of every page, window and dialog in every language, light and dark\n"
         "plovix --help | --version\n";
}

}  // namespace plovix::app
