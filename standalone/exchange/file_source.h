// The exported task being read, used to report what is wrong with it. Used by this room's readers.
#pragma once

#include <plovix/standalone/text/text_table.h>

#include <string>
#include <string_view>
#include <vector>

namespace plovix {

struct FileSource {
  const TextTable& texts;  // outlives the reading
  std::string name;        // of the file, as the user knows it

  // Throws Failure 5 with the host text for that key. Long parameters are shortened.
  [[noreturn]] void Refuse(std::string_view key, std::vector<std::string> parameters) const;
};

}  // namespace plovix
