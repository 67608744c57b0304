// The program: one of its three ways of running, chosen from the command line.
#pragma once

namespace plovix::app {

// Exit status: 0; 1 when the tasks, the display or a picture could not be reached; 2 for a wrong command line
// or script.
int RunProgram(int argc, char** argv);

}  // namespace plovix::app
