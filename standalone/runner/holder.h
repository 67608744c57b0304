// A holder: the process that runs one program for a manager, watches over everything that the program starts,
// and sees to it that nothing of it outlives the manager.
#pragma once

namespace plovix::runner {

// The socket to the manager when a holder starts. Everything else that is open but the standard ones is
// closed.
inline constexpr int kControlDescriptor = 3;
// The word with which a program that has this function in it is started as a holder.
inline constexpr const char* kHoldWord = "--hold";

// How a holder reckons with what a manager needs to find out that its deadline is over.
inline constexpr int kSecondsBeforeDeadline = 5;

// Takes one ProgramRequest from the manager, runs it, and sends its ProgramEnd. Returns the exit status for
// main, in whose process it must be alone: it becomes a session leader, takes over the signals, and reaps
// every child.
//
// The run ends with the program's main process. What is left of its tree then, and the whole tree after
// "stop" or at the time limit, is sent SIGTERM, and SIGKILL after the patience, again and again until nothing
// is left. Without patience it is killed when the manager ends, closes its socket, or lets the deadline come
// closer than kSecondsBeforeDeadline. A lock of an open file (F_OFD_SETLK) on the request's byte lasts as
// long as this process, and this process as long as the tree.
[[nodiscard]] int HoldProgram();

}  // namespace plovix::runner
