// The records from which a person chooses those for a run. Used by the windows.
#pragma once

#include <plovix/standalone/tasks/task_record.h>

#include "query_run.h"

namespace plovix {

// Those that the task's query finds, all of its data object without one, in the order of their keys; each of
// QueryRows::rows has its key. What is for administrators only is left out, as it is where tasks run. Takes
// as long as RunQuery, so call it where nobody waits.
[[nodiscard]] std::variant<QueryRows, QueryProblem> ListRecords(const std::string& path,
                                                                const TaskRecord& task, QueryLimits limits,
                                                                const std::stop_token& unwanted = {});

}  // namespace plovix
