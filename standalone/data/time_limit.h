// Ends what a connection runs when its time is over or nobody wants it any more. Used by the catalogue and by
// running queries.
#pragma once

#include <plovix/standalone/sqlite/connection.h>

#include <chrono>
#include <functional>
#include <stop_token>

namespace plovix {

// Holds while it lives; one inside another one's life takes its place for as long. The connection outlives
// it. From the end on the connection's statements fail with kInterrupted.
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
