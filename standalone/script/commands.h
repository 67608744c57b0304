// The commands of a script as tables: the name, the words and the effect of each.
#pragma once

#include <span>
#include <string_view>

#include "script_session.h"
#include "words.h"

namespace plovix::script {

inline constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

struct Command {
  std::string_view name;     // one word, or two
  std::string_view usage;    // the words it takes
  std::size_t fewest, most;  // how many
  std::string_view effect;   // for the help
  // Gets the words after the name. Fails with a LineError if one of them does not fit.
  void (*run)(ScriptSession& session, const Words& words);
};

[[nodiscard]] std::span<const Command> SceneCommands();    // scene_commands.cpp: before and after "open"
[[nodiscard]] std::span<const Command> UserCommands();     // user_commands.cpp: playing the user
[[nodiscard]] std::span<const Command> AnswerCommands();   // answer_commands.cpp: what the host answers
[[nodiscard]] std::span<const Command> ManagerCommands();  // manager_commands.cpp: tasks that run
[[nodiscard]] std::span<const Command> LookCommands();     // look_commands.cpp: each prints one object

// Runs the command in a line's words; without words, does nothing. Fails with a LineError.
void RunCommand(ScriptSession& session, const Words& words);

}  // namespace plovix::script
