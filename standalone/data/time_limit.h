// Stops a connection's statements when their time is over or they are no longer wanted. Used by the catalogue
// and to run queries.
#pragma once

#include <plovix/standalone/sqlite/connection.h>

#include <chrono>
#include <functional>
#include <stop_token>

namespace plovix {

// Applies during its lifetime; a nested one replaces the outer one for its own lifetime. The connection
// outlives it. Once the time is over, the connection's statements fail with kInterrupted.
class TimeLimit final {
 public:
  // `unwanted` ends the time at once.
  TimeLimit(Connection& connection, std::chrono::milliseconds limit, std::stop_token unwanted = {})
      : connection_(connection),
        end_(std::chrono::steady_clock::now() + limit),
        unwanted_(std::move(unwanted)),
        former_(connection.StopWhen([this] { return IsOver(); })) {}
  ~TimeLimit() { connection_.StopWhen(std::move(former_)); }
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;

  [[nodiscard]] bool IsOver() const noexcept {
    return unwanted_.stop_requested() || std::chrono::steady_clock::now() >= end_;
  }

 private:
  Connection& connection_;
  std::chrono::steady_clock::time_point end_;
  std::stop_token unwanted_;
  std::function<bool()> former_;
};

}  // namespace plovix
