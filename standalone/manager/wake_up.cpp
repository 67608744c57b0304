#include "wake_up.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>

namespace plovix::manager {
namespace {

sigset_t EndingSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  return signals;
}

}  // namespace

void BlockSignals() {
  const sigset_t signals = EndingSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

WakeUp::WakeUp(int ended, bool while_open)
    : ended_(ended),
      input_(while_open ? STDIN_FILENO : -1),
      clock_(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {
  const sigset_t signals = EndingSignals();
  signals_ = runner::Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

void WakeUp::Wait(std::optional<std::chrono::sys_seconds> at, std::chrono::milliseconds longest) {
  itimerspec timer{};
  // Far away where nothing comes by itself: the timer still tells when somebody sets the clock.
  constexpr std::int64_t kFarAway = 1LL << 40;
  timer.it_value.tv_sec = at ? at->time_since_epoch().count() : kFarAway;
  timerfd_settime(clock_.Get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &timer, nullptr);
  std::array<pollfd, 4> waited{
      {{ended_, POLLIN, 0}, {signals_.Get(), POLLIN, 0}, {clock_.Get(), POLLIN, 0}, {input_, POLLIN, 0}}};
  poll(waited.data(), waited.size(), static_cast<int>(longest.count()));
  TakeSignals();
  if (waited[3].revents != 0) TakeInput();
}

void WakeUp::TakeSignals() {
  signalfd_siginfo told{};
  while (read(signals_.Get(), &told, sizeof told) == sizeof told)
    wish_ = wish_ == EndWish::kNone ? EndWish::kDrain : EndWish::kKill;
}

void WakeUp::TakeInput() {
  std::array<char, 64> block{};
  const ssize_t count = read(input_, block.data(), block.size());
  if (count > 0) {
    said_.append(block.data(), static_cast<std::size_t>(count));
    if (said_.size() > kDrainLine.size()) said_.resize(kDrainLine.size() + 1);
    return;
  }
  if (count < 0 && errno == EINTR) return;
  input_ = -1;
  wish_ = std::max(wish_, said_ == kDrainLine ? EndWish::kDrainLong : EndWish::kEnd);
}

}  // namespace plovix::manager
