// What programs wrote, as a window can show it: files are read in small parts, and nothing in them is more
// than text.
#pragma once

#include <QString>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace plovix::app {

inline constexpr std::size_t kMostRead = std::size_t{64} * 1024;  // bytes at once

struct OutputPart {
  std::string bytes;
  std::int64_t offset = 0;  // of the first byte in the file
  std::int64_t size = 0;    // of the file
  bool operator==(const OutputPart&) const = default;
};

// At most kMostRead bytes from `offset` on; without it, the last ones. Nothing if there is no such file.
// Fails with a Failure in words, also for whatever is no ordinary file.
[[nodiscard]] std::optional<OutputPart> ReadOutput(const std::string& path,
                                                   std::optional<std::int64_t> offset);

// The part without the rest of a line, or of a character, with which it begins in the middle of a file.
[[nodiscard]] std::string_view FromWholeLine(const OutputPart& part);
// How many of its bytes end with a whole character; the others belong to the next part.
[[nodiscard]] std::size_t WholeCharacters(std::string_view bytes);

// Bytes from anywhere as lines: what is no UTF-8, and what would move the text about, becomes a visible sign;
// a line that is too long for a layout is broken.
[[nodiscard]] QString VisibleText(std::string_view bytes);

}  // namespace plovix::app
