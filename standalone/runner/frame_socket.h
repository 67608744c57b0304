// What a manager and a holder say to each other: lists of texts over a pair of connected sockets. Neither
// side ever waits for the other one.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "descriptor.h"

namespace plovix::runner {

// Its first text says what it is. Texts may hold any bytes.
using Frame = std::vector<std::string>;

class FrameSocket final {
 public:
  // A stream socket; it no longer blocks, and no program started from here inherits it.
  explicit FrameSocket(Descriptor socket);
  // Two connected ones. Fails with a Failure if the system has none left.
  [[nodiscard]] static std::pair<Descriptor, Descriptor> NewPair();

  [[nodiscard]] int Get() const noexcept { return socket_.Get(); }
  // Sends the frame as soon as the other side has room; Flush goes on once poll reports POLLOUT.
  void Send(const Frame& frame);
  void Flush();
  [[nodiscard]] bool HasUnsent() const noexcept { return !unsent_.empty(); }

  // The frames that have arrived as a whole since the last call.
  [[nodiscard]] std::vector<Frame> Receive();
  // Whether the other side has closed its socket, or ended; what it sent before was received.
  [[nodiscard]] bool IsClosed() const noexcept { return closed_; }

 private:
  [[nodiscard]] std::optional<Frame> TakeFrame();

  Descriptor socket_;
  std::string unsent_, received_;
  bool closed_ = false;
};

}  // namespace plovix::runner
