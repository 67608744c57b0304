#include "time_limit.h"

#include <condition_variable>
#include <mutex>

namespace plovix {

TimeLimit::TimeLimit(const Connection& connection, std::chrono::milliseconds limit, std::stop_token unwanted)
    : watcher_([this, &connection, limit, unwanted = std::move(unwanted)](const std::stop_token& ended) {
        Watch(ended, connection, limit, unwanted);
      }) {}

void TimeLimit::Watch(const std::stop_token& ended, const Connection& connection,
                      std::chrono::milliseconds limit, const std::stop_token& unwanted) {
  std::mutex mutex;
  std::condition_variable_any woken;
  const std::stop_callback wake(unwanted, [&mutex, &woken] {
    const std::lock_guard lock(mutex);
    woken.notify_all();
  });
  std::unique_lock lock(mutex);
  woken.wait_for(lock, ended, limit, [&unwanted] { return unwanted.stop_requested(); });
  if (ended.stop_requested()) return;
  over_ = true;
  // Again and again: a statement that begins after an interruption does not notice it.
  while (!ended.stop_requested()) {
    connection.Interrupt();
    woken.wait_for(lock, ended, std::chrono::milliseconds{1}, [] { return false; });
  }
}

}  // namespace plovix
