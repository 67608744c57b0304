// The offset of a time from UTC as text. Used wherever a script prints an instant.
#pragma once

#include <chrono>
#include <string>

namespace plovix::script {

// "+01:00"; with seconds for offsets from before there were time zones: "+00:09:21".
[[nodiscard]] std::string OffsetText(std::chrono::seconds offset);

}  // namespace plovix::script
