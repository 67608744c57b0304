/// @file
/// Reads files named by the user completely. A pipe or device instead of a file neither blocks the program
/// nor fills its memory. Used for language files and for the import of tasks.
#pragma once

#include <cstddef>
#include <string>

#include "text_table.h"

namespace plovix {

/// The file's bytes. Fails with 5 and a sentence of `texts` that names the file: it does not exist, may not
/// be read, is a folder, a pipe, a device or a socket, has more than `most` bytes (whole megabytes of 1024 *
/// 1024), or whatever else the system reports.
[[nodiscard]] std::string ReadOrdinaryFile(const std::string& path, std::size_t most, const TextTable& texts);

}  // namespace plovix
