// Work on data that nobody has to wait for: a file from anywhere can keep the database busy in ways that
// nothing ends, so whoever asked goes on without the answer. Used by the windows, and with a time limit by
// scripts.
#pragma once

#include <plovix/base/failure.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace plovix {

// Threads that were left behind and still run; with so many of them no further work is begun.
inline constexpr int kMostJobs = 8;

// One piece of work on a thread of its own. Whoever lets go of it leaves the thread behind, which ends with
// its work or with the process; nothing waits for it.
class BackgroundJob final {
 public:
  // `work` owns all that it uses, and throws nothing. It is told through the token that nobody wants it any
  // more.
  using Work = std::function<void(const std::stop_token& unwanted)>;
  // Fails with 5 when kMostJobs run already, or there is no thread to be had.
  explicit BackgroundJob(Work work);
  // As Leave.
  ~BackgroundJob();
  BackgroundJob(const BackgroundJob&) = delete;
  BackgroundJob& operator=(const BackgroundJob&) = delete;

  // Whether it has ended by then.
  [[nodiscard]] bool WaitFor(std::chrono::milliseconds time) const;
  // Nobody wants the outcome any more.
  void Leave() noexcept { unwanted_.request_stop(); }

 private:
  std::stop_source unwanted_;
  std::future<void> ended_;
};

// Waits for a job in the way of whoever asked, with a window or without; false when it was given up.
using JobWait = std::function<bool(const BackgroundJob& job)>;

// Waits for so long, on the caller's thread.
[[nodiscard]] JobWait WaitAtMost(std::chrono::milliseconds time);

// What `find` gives back, found in the background: failures pass, and nothing means that `wait` gave it up;
// `job` is then what was left behind.
template <typename Found>
[[nodiscard]] std::optional<Found> FindInBackground(const JobWait& wait, std::unique_ptr<BackgroundJob>& job,
                                                    std::function<Found(const std::stop_token&)> find) {
  struct Outcome {
    std::optional<Found> found;
    std::optional<Failure> failure;
  };
  const auto outcome = std::make_shared<Outcome>();
  job = std::make_unique<BackgroundJob>([outcome, find = std::move(find)](const std::stop_token& unwanted) {
    try {
      outcome->found.emplace(find(unwanted));
    } catch (...) {
      outcome->failure = CurrentFailure();
    }
  });
  if (!wait(*job)) {
    job->Leave();
    return std::nullopt;
  }
  job.reset();
  if (outcome->failure) throw Failure(*outcome->failure);
  return std::move(outcome->found);
}

}  // namespace plovix
