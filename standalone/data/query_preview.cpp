#include "query_preview.h"

#include <utility>

namespace plovix {

QueryPreview::QueryPreview(QueryTarget target, Post post, const QueryLimits& limits)
    : target_(std::move(target)), limits_(limits), mailbox_(std::make_shared<Mailbox>()) {
  mailbox_->post = std::move(post);
}

QueryPreview::~QueryPreview() {
  Cancel();
  const std::lock_guard lock(mailbox_->mutex);
  mailbox_->post = nullptr;
}

void QueryPreview::Ask(BoundQuery query, Arrived arrived) {
  Cancel();
  latest_ = std::make_shared<Request>(Request{.arrived = std::move(arrived)});
  try {
    job_ = std::make_unique<BackgroundJob>([mailbox = mailbox_, request = latest_, target = target_,
                                            limits = limits_,
                                            query = std::move(query)](const std::stop_token& unwanted) {
      auto result = RunQuery(target, query, limits, unwanted);
      if (!unwanted.stop_requested()) Deliver(*mailbox, request, std::move(result));
    });
  } catch (const Failure& failure) {
    Deliver(*mailbox_, latest_, QueryProblem{"query.preview.file", failure.Description()});
  }
}

// The receiving thread checks again whether the result is still wanted, because only that thread withdraws
// requests.
void QueryPreview::Deliver(Mailbox& mailbox, const std::shared_ptr<Request>& request, Result result) {
  const std::lock_guard lock(mailbox.mutex);
  if (!mailbox.post) return;
  mailbox.post([request, result = std::move(result)] {
    if (!request->unwanted) request->arrived(result);
  });
}

void QueryPreview::Cancel() {
  if (latest_) latest_->unwanted = true;
  latest_.reset();
  job_.reset();
}

}  // namespace plovix
