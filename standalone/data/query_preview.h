// Runs queries in the background, the newest one only. Used by the query builder.
#pragma once

#include <functional>
#include <memory>
#include <mutex>

#include "background_job.h"
#include "query_run.h"

namespace plovix {

class QueryPreview final {
 public:
  using Result = std::variant<QueryRows, QueryProblem>;
  using Arrived = std::function<void(const Result&)>;
  // Has a function run later on the caller's thread. Called on another thread, and not any more once the
  // preview is gone.
  using Post = std::function<void(std::function<void()>)>;

  QueryPreview(QueryTarget target, Post post, const QueryLimits& limits = {});
  // Waits for nothing that runs. Results that were posted already do not arrive any more.
  ~QueryPreview();
  QueryPreview(const QueryPreview&) = delete;
  QueryPreview& operator=(const QueryPreview&) = delete;

  // Leaves the former query, whose result does not arrive any more. An SQL text is a query without values.
  // A query that does not answer, in spite of its time limit, never arrives.
  void Ask(BoundQuery query, Arrived arrived);
  void Cancel();

 private:
  struct Request {
    Arrived arrived;
    bool unwanted = false;  // the caller's thread alone
  };
  struct Mailbox {
    std::mutex mutex;
    Post post;  // guarded by mutex; empty: nobody is there any more
  };
  static void Deliver(Mailbox& mailbox, const std::shared_ptr<Request>& request, Result result);

  QueryTarget target_;
  QueryLimits limits_;
  std::shared_ptr<Mailbox> mailbox_;
  std::shared_ptr<Request> latest_;
  std::unique_ptr<BackgroundJob> job_;
};

}  // namespace plovix
