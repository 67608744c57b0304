// The clock of deadlines: counts from the machine's start, also while it sleeps, and nobody can set it. All
// processes of a machine agree on it.
#pragma once

#include <chrono>
#include <ctime>

namespace plovix::runner {

struct BootClock {
  using duration = std::chrono::milliseconds;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<BootClock>;
  static constexpr bool is_steady = true;

  [[nodiscard]] static time_point now() noexcept {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    const auto since_start = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    return time_point(std::chrono::duration_cast<duration>(since_start));
  }
};

}  // namespace plovix::runner
