// What an action that runs a program becomes for one record.
#pragma once

#include <plovix/standalone/tasks/placeholders.h>
#include <plovix/standalone/tasks/task_record.h>

#include <string>
#include <vector>

#include "program.h"

namespace plovix::runner {

// What every program finds in its environment: PATH, HOME, USER, LOGNAME, SHELL, LANG, and TZ if `zone`, a
// name such as "Europe/Paris", is not empty. HOME and the following are of the user as whom this process
// runs, LANG is this process's own or C.UTF-8. Nothing else of this process's environment is handed on.
[[nodiscard]] std::vector<std::string> FixedEnvironment(const std::string& zone);

// Path, arguments, environment, folder, time limit and secrets of an action of the kind "run-program"; the
// rest is the caller's. Its variables replace those of `environment` of the same name. Without a folder the
// program starts in that of the variable HOME. Fails with a Failure in words where CheckAction finds a
// problem, and as Fill does.
[[nodiscard]] ProgramRequest RequestFor(const ActionRecord& action, const RecordValues& record,
                                        const Secrets& secrets, const std::vector<std::string>& environment);

}  // namespace plovix::runner
