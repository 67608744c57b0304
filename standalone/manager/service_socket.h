// What a manager tells the system that started it as a service: that it is ready, what it does, that it still
// plans, and that it ends. Each is a datagram to the socket that the environment names.
#pragma once

#include <plovix/standalone/runner/descriptor.h>

#include <chrono>
#include <optional>
#include <string>

namespace plovix::manager {

class ServiceSocket {
 public:
  // From NOTIFY_SOCKET, WATCHDOG_USEC and WATCHDOG_PID. Without them, or if nobody listens, nothing is told.
  ServiceSocket();

  // After a step that succeeded: it is ready, and plans. Tells a status only when it is another one.
  void TellAlive(const std::string& status);
  void TellEnding();

 private:
  void Tell(const std::string& lines) const;

  runner::Descriptor socket_;
  std::string address_, status_;
  std::chrono::microseconds watchdog_{0};  // the longest silence; 0: nobody watches
  std::optional<std::chrono::steady_clock::time_point> told_;
};

// Whether the system started this process as a service.
[[nodiscard]] bool IsService();

}  // namespace plovix::manager
