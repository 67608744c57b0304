// Which file stands at a path, to be stored and compared later: it tells a file from its copies.
#pragma once

#include <string>

namespace plovix {

// The file system's own number, which stays when the machine starts again, and the file's number in it; empty
// if there is no file. Differs for a copy, and for a file that was restored in place of another one.
[[nodiscard]] std::string FilePlace(const std::string& path);

}  // namespace plovix
