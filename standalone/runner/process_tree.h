// The processes below this one. A holder is their reaper: whoever loses its parent becomes its child, so none
// can leave the tree.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace plovix::runner {

struct ProcessInfo {
  pid_t id = 0;
  pid_t parent = 0;
  pid_t session = 0;
  char state = 0;    // 'Z': its first thread has ended, and mostly the whole process
  std::string name;  // of its program, cut to 15 bytes by the system
};

// Every process below this one, children before grandchildren.
[[nodiscard]] std::vector<ProcessInfo> Descendants();

// Sends them a signal. None that merely got the number of one of them is reached. Processes that appear
// meanwhile may be missed, so whoever ends a tree repeats it.
void SignalDescendants(int signal);

// Kills every process of the session, until there is none that this process may kill. For what a lost holder
// left; a process that began a session of its own is not found.
void KillSession(pid_t session);

}  // namespace plovix::runner
