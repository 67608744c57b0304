// Ends what a connection runs when its time is over or nobody wants it any more. Used by the catalogue and by
// running queries.
#pragma once

#include <plovix/standalone/sqlite/connection.h>

#include <atomic>
#include <chrono>
#include <stop_token>
#include <thread>

namespace plovix {

// While it lives, a thread of its own watches the time. The connection outlives it.
class TimeLimit final {
 public:
  // `unwanted` ends the time at once.
  TimeLimit(const Connection& connection, std::chrono::milliseconds limit, std::stop_token unwanted = {});

  // From then on the connection's statements fail with kInterrupted.
  [[nodiscard]] bool IsOver() const noexcept { return over_; }

 private:
  void Watch(const std::stop_token& ended, const Connection& connection, std::chrono::milliseconds limit,
             const std::stop_token& unwanted);

  std::atomic<bool> over_ = false;
  std::jthread watcher_;
};

}  // namespace plovix
