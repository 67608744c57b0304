#include "record_list.h"

#include "record_query.h"
#include "sqlite_data_source.h"

namespace plovix {

std::variant<QueryRows, QueryProblem> ListRecords(const std::string& path, const TaskRecord& task,
                                                  QueryLimits limits, const std::stop_token& unwanted) {
  SqliteDataSource source(path, limits.patience, limits.time);
  source.StopWhen(unwanted);
  const auto object = source.Find(task.data_object_name);
  if (!object || HasHiddenName(object->name) || object->reads_hidden)
    return QueryProblem{"choose.noObject", task.data_object_caption};
  if (object->key.empty()) return QueryProblem{"choose.noKey", object->caption};
  const QueryTarget target{path, false};
  if (!task.query.empty()) {
    // Alone, because a part of another statement could be more than a query.
    if (auto problem = CheckQuery(target, task.query, unwanted)) return *std::move(problem);
  }
  limits.keys = true;
  return RunQuery(target, {RecordsStatement(*object, task.query), {}}, limits, unwanted);
}

}  // namespace plovix
