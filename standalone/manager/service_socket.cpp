#include "service_socket.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace plovix::manager {
namespace {

std::string_view Variable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// 0 if it is no number.
std::int64_t NumberIn(std::string_view text) {
  std::int64_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return read.ec == std::errc() && read.ptr == text.data() + text.size() ? number : 0;
}

}  // namespace

ServiceSocket::ServiceSocket()
    : socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)),
      address_(Variable("NOTIFY_SOCKET")) {
  const std::string_view watched = Variable("WATCHDOG_PID");
  if (watched.empty() || NumberIn(watched) == getpid())
    watchdog_ = std::chrono::microseconds(NumberIn(Variable("WATCHDOG_USEC")));
}

void ServiceSocket::Tell(const std::string& lines) const {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (address_.empty() || address_.size() >= sizeof address.sun_path) return;
  std::memcpy(address.sun_path, address_.data(), address_.size());
  if (address_.front() == '@') address.sun_path[0] = '\0';  // a name that is no file
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + address_.size());
  sendto(socket_.Get(), lines.data(), lines.size(), MSG_NOSIGNAL,
         reinterpret_cast<const sockaddr*>(&address),  // NOLINT(*-reinterpret-cast): the system's way
         length);
}

// Twice as often as the watchdog needs it.
void ServiceSocket::TellAlive(const std::string& status) {
  const auto now = std::chrono::steady_clock::now();
  std::string lines;
  if (!told_) lines += "READY=1\n";
  if (status != status_) lines += "STATUS=" + status + "\n";
  if (watchdog_.count() > 0 && (!told_ || now - *told_ >= watchdog_ / 2)) lines += "WATCHDOG=1\n";
  if (lines.empty()) return;
  if (lines.ends_with("WATCHDOG=1\n") || !told_) told_ = now;
  status_ = status;
  Tell(lines);
}

void ServiceSocket::TellEnding() {
  Tell("STOPPING=1\n");
}

// The id of the invocation says nothing: everything in a desktop's session has one in its environment.
bool IsService() {
  return !Variable("NOTIFY_SOCKET").empty() || NumberIn(Variable("SYSTEMD_EXEC_PID")) == getpid();
}

}  // namespace plovix::manager
