// The program: one of its three ways of running, chosen from the command line.
#pragma once

namespace plovix::app {

// Returns the exit status: 0; 1 if the tasks, the display or a screenshot file could not be accessed; 2 for
// an invalid command line or script.
int RunProgram(int argc, char** argv);

}  // namespace plovix::app
