#include "program_action.h"

#include <plovix/base/failure.h>
#include <plovix/base/text_rules.h>
#include <plovix/standalone/tasks/action_kinds.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace plovix::runner {
namespace {

constexpr std::string_view kPath = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin";
constexpr std::string_view kUsualLanguage = "C.UTF-8";

std::string_view NameOf(std::string_view variable) {
  return variable.substr(0, variable.find('='));
}

void SetVariable(std::vector<std::string>& environment, std::string variable) {
  const auto found = std::ranges::find(environment, NameOf(variable), NameOf);
  if (found == environment.end()) {
    environment.push_back(std::move(variable));
  } else {
    *found = std::move(variable);
  }
}

// Without one the root folder, which everybody may enter.
std::string HomeIn(const std::vector<std::string>& environment) {
  const auto found = std::ranges::find(environment, "HOME", NameOf);
  return found == environment.end() ? "/" : found->substr(std::string_view("HOME=").size());
}

// Only those that the program is given: others cannot be in its output.
void TakeSecrets(const TextTemplate& text, const Secrets& secrets, std::vector<std::string>& taken) {
  for (const TextPiece& piece : text) {
    if (piece.kind == TextPiece::Kind::kSecret) taken.push_back(TextOf(ValueOf(piece, {}, secrets)));
  }
}

std::string SettingOf(const ActionRecord& action, const std::string& key) {
  const auto found = action.settings.find(key);
  return found == action.settings.end() ? std::string() : found->second;
}

std::chrono::milliseconds TimeLimitOf(const ActionRecord& action) {
  const std::string text = SettingOf(action, "timeLimit");
  const std::string_view digits = Trimmed(text);
  std::int64_t seconds = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), seconds);  // checked before
  return std::chrono::seconds(seconds);
}

}  // namespace

std::vector<std::string> FixedEnvironment(const std::string& zone) {
  constexpr std::size_t kRoom = 16384;  // for the texts of one user
  std::vector<char> room(kRoom);
  passwd user{};
  passwd* found = nullptr;
  getpwuid_r(geteuid(), &user, room.data(), room.size(), &found);
  const auto text = [found](const char* value, std::string_view otherwise) {
    return std::string(found == nullptr || value == nullptr || *value == '\0' ? otherwise : value);
  };
  const char* language = std::getenv("LANG");  // NOLINT(concurrency-mt-unsafe): nobody changes it
  std::vector<std::string> environment{
      "PATH=" + std::string(kPath),
      "HOME=" + text(user.pw_dir, "/"),
      "USER=" + text(user.pw_name, std::to_string(geteuid())),
      "LOGNAME=" + text(user.pw_name, std::to_string(geteuid())),
      "SHELL=" + text(user.pw_shell, "/bin/sh"),
      "LANG=" + std::string(language == nullptr ? kUsualLanguage : language)};
  if (!zone.empty()) environment.push_back("TZ=" + zone);
  return environment;
}

ProgramRequest RequestFor(const ActionRecord& action, const RecordValues& record, const Secrets& secrets,
                          const std::vector<std::string>& environment) {
  if (const auto problem = CheckAction(action))
    throw Failure(failure_number::kInvalidCall,
                  "The action's field \"" + std::string(problem->field) + "\" is missing or unfit");
  ProgramRequest request;
  request.path = std::string(Trimmed(SettingOf(action, "path")));
  for (const TextTemplate& argument : ParseArguments(SettingOf(action, "arguments")).value)
    request.arguments.push_back(FillForProgram(argument, record));
  request.environment = environment;
  for (const VariableTemplate& variable : ParseVariables(SettingOf(action, "variables")).value) {
    SetVariable(request.environment, variable.name + "=" + FillForProgram(variable.value, record, secrets));
    TakeSecrets(variable.value, secrets, request.secrets);
  }
  request.folder = std::string(Trimmed(SettingOf(action, "folder")));
  if (request.folder.empty()) request.folder = HomeIn(request.environment);
  request.time_limit = TimeLimitOf(action);
  return request;
}

}  // namespace plovix::runner
