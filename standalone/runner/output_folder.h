// The folder with what programs wrote. Used by managers, and by windows that show it.
#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace plovix::runner {

// The folder of the files of all runs, beside the task file; it need not exist.
[[nodiscard]] std::string OutputFolder(const std::string& task_file);
// The file of a run in that folder: what the program that it ran last has written.
[[nodiscard]] std::string OutputPath(const std::string& folder, std::int64_t run);

// All files of runs together, in bytes; the oldest go first.
inline constexpr std::int64_t kMostOutput = std::int64_t{1} << 30;

// Deletes files of runs, the oldest first, until those left have at most `most` bytes; those of `running`
// stay, and so does whatever else is in the folder. A file that cannot be deleted is left alone.
void TrimOutputs(const std::string& folder, std::int64_t most, const std::set<std::int64_t>& running);

}  // namespace plovix::runner
