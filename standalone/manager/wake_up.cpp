#include "wake_up.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>

#include <array>
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

WakeUp::WakeUp(int ended)
    : ended_(ended), clock_(timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)) {
  const sigset_t signals = EndingSignals();
  signals_ = runner::Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

bool WakeUp::Wait(std::optional<std::chrono::sys_seconds> at, std::chrono::milliseconds longest) {
  itimerspec timer{};
  // Far away where nothing comes by itself: the timer still tells when somebody sets the clock.
  constexpr std::int64_t kFarAway = 1LL << 40;
  timer.it_value.tv_sec = at ? at->time_since_epoch().count() : kFarAway;
  timerfd_settime(clock_.Get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &timer, nullptr);
  std::array<pollfd, 3> waited{{{ended_, POLLIN, 0}, {signals_.Get(), POLLIN, 0}, {clock_.Get(), POLLIN, 0}}};
  poll(waited.data(), waited.size(), static_cast<int>(longest.count()));
  return (waited[1].revents & POLLIN) == 0;
}

}  // namespace plovix::manager
