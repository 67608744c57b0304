#include "background_job.h"

#include <atomic>
#include <system_error>
#include <thread>

namespace plovix {
namespace {

std::atomic<int> running{0};

[[noreturn]] void Refuse() {
  throw Failure(failure_number::kInvalidCall,
                "earlier work on the data does not end; start the program again to read them");
}

}  // namespace

BackgroundJob::BackgroundJob(Work work) {
  if (running.fetch_add(1) >= kMostJobs) {
    --running;
    Refuse();
  }
  std::promise<void> end;
  ended_ = end.get_future();
  try {
    std::thread([work = std::move(work), unwanted = unwanted_.get_token(), end = std::move(end)]() mutable {
      work(unwanted);
      work = nullptr;  // destroys what it owns before anybody is notified
      --running;
      end.set_value();
    }).detach();
  } catch (const std::system_error&) {
    --running;
    Refuse();
  }
}

BackgroundJob::~BackgroundJob() {
  Leave();
}

bool BackgroundJob::WaitFor(std::chrono::milliseconds time) const {
  return ended_.wait_for(time) == std::future_status::ready;
}

JobWait WaitAtMost(std::chrono::milliseconds time) {
  return [time](const BackgroundJob& job) { return job.WaitFor(time); };
}

}  // namespace plovix
