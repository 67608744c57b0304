#include "query_preview.h"

#include <utility>

namespace plovix {

QueryPreview::QueryPreview(std::string path, Post post, const QueryLimits& limits)
    : path_(std::move(path)),
      post_(std::move(post)),
      limits_(limits),
      worker_([this](const std::stop_token& ended) { Work(ended); }) {}

QueryPreview::~QueryPreview() {
  Cancel();
}

void QueryPreview::Ask(BoundQuery query, Arrived arrived) {
  Cancel();
  latest_ = std::make_shared<Request>(Request{std::move(query), std::move(arrived), {}});
  const std::lock_guard lock(mutex_);
  waiting_ = latest_;
  woken_.notify_one();
}

void QueryPreview::Cancel() {
  if (latest_) latest_->unwanted.request_stop();
  latest_.reset();
}

void QueryPreview::Work(const std::stop_token& ended) {
  while (true) {
    std::unique_lock lock(mutex_);
    if (!woken_.wait(lock, ended, [this] { return waiting_ != nullptr; })) return;
    const std::shared_ptr<Request> request = std::exchange(waiting_, nullptr);
    lock.unlock();
    const std::stop_token unwanted = request->unwanted.get_token();
    if (unwanted.stop_requested()) continue;
    auto result = RunQuery(path_, request->query, limits_, unwanted);
    if (unwanted.stop_requested()) continue;
    // Asked for again where it arrives: only that thread takes requests back.
    post_([request, result = std::move(result)] {
      if (!request->unwanted.stop_requested()) request->arrived(result);
    });
  }
}

}  // namespace plovix
