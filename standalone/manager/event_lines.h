// What a manager prints: a line for each run that begins or ends.
#pragma once

#include <plovix/standalone/runs/run_store.h>
#include <plovix/standalone/schedule/zone.h>

#include <string>

namespace plovix::manager {

// For a person, as the journal has it: the time is the journal's own. `name`: of the task.
[[nodiscard]] std::string EventLine(const RunRecord& run, const RunEnd* end, const std::string& name);
// The same as one JSON object.
[[nodiscard]] std::string EventJson(const RunRecord& run, const RunEnd* end, const std::string& name,
                                    Instant now);

}  // namespace plovix::manager
