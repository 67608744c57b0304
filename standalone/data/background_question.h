// A question that is answered in the background, only the newest one. Used by windows, which never wait for a
// user's data.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "background_job.h"

namespace plovix {

// Runs a function later on the caller's thread. Called on another thread, but not after whoever asks has been
// destroyed.
using PostToCaller = std::function<void(std::function<void()>)>;

template <class Result>
class BackgroundQuestion final {
 public:
  // Both own everything they use. `Failed`: the result in place of a failure.
  using Find = std::function<Result(const std::stop_token& unwanted)>;
  using Failed = std::function<Result(const Failure& failure)>;
  using Arrived = std::function<void(const Result&)>;

  explicit BackgroundQuestion(PostToCaller post) : mailbox_(std::make_shared<Mailbox>()) {
    mailbox_->post = std::move(post);
  }
  // Does not wait for what is still being found. Results already posted no longer arrive.
  ~BackgroundQuestion() {
    Cancel();
    const std::lock_guard lock(mailbox_->mutex);
    mailbox_->post = nullptr;
  }
  BackgroundQuestion(const BackgroundQuestion&) = delete;
  BackgroundQuestion& operator=(const BackgroundQuestion&) = delete;

  // Abandons the former question, whose result no longer arrives. If `find` does not end, its result never
  // arrives.
  void Ask(Find find, const Failed& failed, Arrived arrived) {
    Cancel();
    latest_ = std::make_shared<Request>(Request{.arrived = std::move(arrived)});
    try {
      job_ = std::make_unique<BackgroundJob>([mailbox = mailbox_, request = latest_, find = std::move(find),
                                              failed](const std::stop_token& unwanted) {
        std::optional<Result> result;
        if (const auto failure = FailureOf([&] { result.emplace(find(unwanted)); }))
          result.emplace(failed(*failure));
        if (!unwanted.stop_requested()) Deliver(*mailbox, request, *std::move(result));
      });
    } catch (const Failure& failure) {
      Deliver(*mailbox_, latest_, failed(failure));
    }
  }
  void Cancel() {
    if (latest_) latest_->unwanted = true;
    latest_.reset();
    job_.reset();
  }

 private:
  struct Request {
    Arrived arrived;
    bool unwanted = false;  // only for the caller's thread
  };
  struct Mailbox {
    std::mutex mutex;
    PostToCaller post;  // guarded by mutex; empty: whoever asked is gone
  };

  // The receiving thread checks again whether the result is still wanted, because only that thread withdraws
  // requests.
  static void Deliver(Mailbox& mailbox, const std::shared_ptr<Request>& request, Result result) {
    const std::lock_guard lock(mailbox.mutex);
    if (!mailbox.post) return;
    mailbox.post([request, result = std::move(result)] {
      if (!request->unwanted) request->arrived(result);
    });
  }

  std::shared_ptr<Mailbox> mailbox_;
  std::shared_ptr<Request> latest_;
  std::unique_ptr<BackgroundJob> job_;
};

}  // namespace plovix
