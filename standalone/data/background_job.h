// Work on data for which nobody has to wait: a file from anywhere can keep the database busy in ways that
// nothing can stop, so the caller goes on without the answer. Used by the windows, and with a time limit by
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

// The most abandoned threads that may still run; with so many no new work is started.
inline constexpr int kMostJobs = 8;

// One piece of work on its own thread. Destroying the job abandons the thread, which ends with its work or
// with the process; nothing waits for it.
class BackgroundJob final {
 public:
  // `work` owns everything it uses, and throws nothing. The token tells it that its result is no longer
  // wanted.
  using Work = std::function<void(const std::stop_token& unwanted)>;
  // Fails with 5 if kMostJobs are already running, or no thread can be created.
  explicit BackgroundJob(Work work);
  // Like Leave.
  ~BackgroundJob();
  BackgroundJob(const BackgroundJob&) = delete;
  BackgroundJob& operator=(const BackgroundJob&) = delete;

  // Waits at most that long; returns whether the work has ended.
  [[nodiscard]] bool WaitFor(std::chrono::milliseconds time) const;
  // The result is no longer wanted.
  void Leave() noexcept { unwanted_.request_stop(); }

 private:
  std::stop_source unwanted_;
  std::future<void> ended_;
};

// Waits for a job, with or without a window; false if the wait was given up.
using JobWait = std::function<bool(const BackgroundJob& job)>;

// Waits at most that long, on the caller's thread.
[[nodiscard]] JobWait WaitAtMost(std::chrono::milliseconds time);

// The result of `find`, computed in the background. Failures are passed on. Nothing means that `wait` gave
// up; `job` is then the abandoned job.
template <typename Found>
[[nodiscard]] std::optional<Found> FindInBackground(const JobWait& wait, std::unique_ptr<BackgroundJob>& job,
                                                    std::function<Found(const std::stop_token&)> find) {
  struct Outcome {
    std::optional<Found> found;
    std::optional<Failure> failure;
  };
  const auto outcome = std::make_shared<Outcome>();
  job = std::make_unique<BackgroundJob>([outcome, find = std::move(find)](const std::stop_token& unwanted) {
    outcome->failure = FailureOf([&] { outcome->found.emplace(find(unwanted)); });
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
