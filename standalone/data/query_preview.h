// Runs queries in the background, only the newest one. Used by the query builder.
#pragma once

#include "background_question.h"
#include "query_run.h"

namespace plovix {

class QueryPreview final {
 public:
  using Result = std::variant<QueryRows, QueryProblem>;
  using Arrived = std::function<void(const Result&)>;

  QueryPreview(QueryTarget target, PostToCaller post, const QueryLimits& limits = {})
      : target_(std::move(target)), limits_(limits), question_(std::move(post)) {}

  // Abandons the former query, whose result no longer arrives. An SQL text is a query without values. If a
  // query does not end in spite of its time limit, its result never arrives.
  void Ask(BoundQuery query, Arrived arrived);
  void Cancel() { question_.Cancel(); }

 private:
  QueryTarget target_;
  QueryLimits limits_;
  BackgroundQuestion<Result> question_;
};

}  // namespace plovix
