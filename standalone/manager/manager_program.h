// plovix-manager: runs the tasks of a task file.
#pragma once

namespace plovix::manager {

// The exit status: 0 when it was asked to end, 1 if it cannot work, 2 for a wrong command line, 3 if it
// refuses to run tasks here, and would again.
[[nodiscard]] int RunManagerProgram(int argc, char** argv);

}  // namespace plovix::manager
