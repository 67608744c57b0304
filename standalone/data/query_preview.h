// Runs queries in the background, one at a time, the newest one only. Used by the query builder.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "query_run.h"

namespace plovix {

class QueryPreview final {
 public:
  using Result = std::variant<QueryRows, QueryProblem>;
  using Arrived = std::function<void(const Result&)>;
  // Has a function run later on the caller's thread. Called on another thread; lives as long as the preview.
  using Post = std::function<void(std::function<void()>)>;

  QueryPreview(std::string path, Post post, const QueryLimits& limits = {});
  // Interrupts what runs. Results that were posted already do not arrive any more.
  ~QueryPreview();
  QueryPreview(const QueryPreview&) = delete;
  QueryPreview& operator=(const QueryPreview&) = delete;

  // Interrupts the former query, whose result does not arrive any more. An SQL text is a query without
  // values.
  void Ask(BoundQuery query, Arrived arrived);
  void Cancel();

 private:
  struct Request {
    BoundQuery query;
    Arrived arrived;
    std::stop_source unwanted;
  };
  void Work(const std::stop_token& ended);

  std::string path_;
  Post post_;
  QueryLimits limits_;
  std::shared_ptr<Request> latest_;  // the caller's thread alone
  std::mutex mutex_;
  std::condition_variable_any woken_;
  std::shared_ptr<Request> waiting_;  // guarded by mutex_
  std::jthread worker_;
};

}  // namespace plovix
