// Starts a program as a child of this process. Used by the holder, which has a single thread.
#pragma once

#include <sys/types.h>

#include <string>

#include "program.h"

namespace plovix::runner {

struct Execution {
  pid_t id = 0;         // 0 if it does not run
  std::string failure;  // why, in words
};

// The program runs in a process group of its own, reads nothing, writes both of its outputs to `output`, has
// the usual reactions to all signals, and inherits nothing else that is open. It is killed when this process
// ends.
[[nodiscard]] Execution Execute(const ProgramRequest& request, int output);

}  // namespace plovix::runner
