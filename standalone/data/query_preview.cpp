#include "query_preview.h"

#include <utility>

namespace plovix {

void QueryPreview::Ask(BoundQuery query, Arrived arrived) {
  question_.Ask([target = target_, limits = limits_, query = std::move(query)](
                    const std::stop_token& unwanted) { return RunQuery(target, query, limits, unwanted); },
                [](const Failure& failure) -> Result {
                  return QueryProblem{"query.preview.file", failure.Description()};
                },
                std::move(arrived));
}

}  // namespace plovix
