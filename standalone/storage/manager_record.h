// A manager of a task file, as others see it.
#pragma once

#include <plovix/standalone/runs/run_record.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace plovix {

// What it lives with: a window of the program, the system's services, or whoever started it by hand.
enum class ManagerKind { kWindow, kService, kTerminal };
// As the task file writes them, in the order of the enumeration.
inline constexpr std::array<std::string_view, 3> kManagerKindNames{"window", "service", "terminal"};

struct ManagerRecord {
  std::int64_t number = 0;
  ManagerKind kind = ManagerKind::kTerminal;
  std::string host;     // the machine's name
  std::string account;  // the operating system's user, as whom programs run
  std::int64_t process = 0;
  Instant since;
  bool operator==(const ManagerRecord&) const = default;
};

}  // namespace plovix
