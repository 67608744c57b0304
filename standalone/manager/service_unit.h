// The manager as a service of the user: the unit file, and making it known to the system.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "manager_options.h"

namespace plovix::manager {

// The file as the package has it.
[[nodiscard]] std::string_view UserUnit();
// The same with another command: an absolute path and its arguments. Fails if a word cannot stand in it.
[[nodiscard]] std::string UnitFor(const std::vector<std::string>& command);

// Each says what it does, and returns the exit status for main; without a session of the system's services,
// it says what is left to do. Each fails in words, and may be repeated.

// Writes the unit for the program and the files of the options, has it begin with each session, and starts
// it.
[[nodiscard]] int InstallService(const std::string& program, const ManagerOptions& options);
[[nodiscard]] int RemoveService();

}  // namespace plovix::manager
