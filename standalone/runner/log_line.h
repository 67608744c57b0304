// The action that writes a line to a log file.
#pragma once

#include <string>
#include <string_view>

namespace plovix::runner {

// Appends the line, which has no line end yet, by a single write, so that lines of several writers do not
// mix. A missing file is created for this user alone (0600). Fails with a Failure that names the file: the
// path is not absolute, its folder does not exist, it is a folder, a link, or no ordinary file, permission is
// denied, or the disk is full; then part of the line may be in the file.
void AppendLogLine(const std::string& path, std::string_view line);

}  // namespace plovix::runner
