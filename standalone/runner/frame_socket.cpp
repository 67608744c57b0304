#include "frame_socket.h"

#include <fcntl.h>
#include <plovix/base/failure.h>
#include <sys/socket.h>

#include <array>
#include <cstdint>
#include <cstring>

namespace plovix::runner {
namespace {

// Both sides run on one machine, so a number is sent as it stands in memory.
using Length = std::uint32_t;

void AppendLength(std::string& bytes, std::size_t length) {
  const auto number = static_cast<Length>(length);
  std::array<char, sizeof number> raw{};
  std::memcpy(raw.data(), &number, sizeof number);
  bytes.append(raw.data(), raw.size());
}

// Takes a number off the beginning; nothing while it has not arrived.
std::optional<std::size_t> TakeLength(std::string_view& bytes) {
  Length number = 0;
  if (bytes.size() < sizeof number) return std::nullopt;
  std::memcpy(&number, bytes.data(), sizeof number);
  bytes.remove_prefix(sizeof number);
  return number;
}

}  // namespace

FrameSocket::FrameSocket(Descriptor socket) : socket_(std::move(socket)) {
  fcntl(socket_.Get(), F_SETFD, FD_CLOEXEC);
  fcntl(socket_.Get(), F_SETFL, O_NONBLOCK);
}

std::pair<Descriptor, Descriptor> FrameSocket::NewPair() {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
    throw Failure(failure_number::kInternal, "A program cannot be started: " + SystemWords(errno));
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

void FrameSocket::Send(const Frame& frame) {
  AppendLength(unsent_, frame.size());
  for (const std::string& text : frame) {
    AppendLength(unsent_, text.size());
    unsent_ += text;
  }
  Flush();
}

// What nobody can receive any more is forgotten.
void FrameSocket::Flush() {
  while (!unsent_.empty()) {
    const ssize_t sent = send(socket_.Get(), unsent_.data(), unsent_.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0 && errno == EAGAIN) return;
    if (sent < 0) return unsent_.clear();
    unsent_.erase(0, static_cast<std::size_t>(sent));
  }
}

std::vector<Frame> FrameSocket::Receive() {
  std::array<char, 16384> block{};
  while (!closed_) {
    const ssize_t count = recv(socket_.Get(), block.data(), block.size(), 0);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EAGAIN) break;
    closed_ = count <= 0;
    if (!closed_) received_.append(block.data(), static_cast<std::size_t>(count));
  }
  std::vector<Frame> frames;
  while (auto frame = TakeFrame()) frames.push_back(std::move(*frame));
  return frames;
}

std::optional<Frame> FrameSocket::TakeFrame() {
  std::string_view rest = received_;
  const auto count = TakeLength(rest);
  if (!count) return std::nullopt;
  Frame frame;
  while (frame.size() < *count) {
    const auto length = TakeLength(rest);
    if (!length || rest.size() < *length) return std::nullopt;
    frame.emplace_back(rest.substr(0, *length));
    rest.remove_prefix(*length);
  }
  received_.erase(0, received_.size() - rest.size());
  return frame;
}

}  // namespace plovix::runner
