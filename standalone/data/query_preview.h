// Runs queries in the background, only the newest one. Used by the query builder.
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
  // Runs a function later on the caller's thread. Called on another thread, but not after the preview has
  // been destroyed.
  using Post = std::function<void(std::function<void()>)>;

  QueryPreview(QueryTarget target, Post post, const QueryLimits& limits = {});
  // Does not wait for running queries. Results already posted no longer arrive.
  ~QueryPreview();
  QueryPreview(const QueryPreview&) = delete;
  QueryPreview& operator=(const QueryPreview&) = delete;

  // Abandons the former query, whose result no longer arrives. An SQL text is a query without values. If a
  // query does not end in spite of its time limit, its result never arrives.
  void Ask(BoundQuery query, Arrived arrived);
  void Cancel();

 private:
  struct Request {
    Arrived arrived;
    bool unwanted = false;  // only for the caller's thread
  };
  struct Mailbox {
    std::mutex mutex;
    Post post;  // guarded by mutex; empty: the preview is gone
  };
  static void Deliver(Mailbox& mailbox, const std::shared_ptr<Request>& request, Result result);

  QueryTarget target_;
  QueryLimits limits_;
  std::shared_ptr<Mailbox> mailbox_;
  std::shared_ptr<Request> latest_;
  std::unique_ptr<BackgroundJob> job_;
};

}  // namespace plovix
