// The members of a task by their documented names, for "task set" and "task".
#pragma once

#include <plovix/standalone/objects/host_state.h>

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace plovix::script {

// Every member of the task; a tag's text is the host's.
[[nodiscard]] nlohmann::ordered_json TaskJson(const TaskRecord& task, const HostState& state);

// Sets the named member from a script's word; "Recurrence.TimeKind" and "Recurrence.Pattern.Day.2" reach
// inside. An unknown or read-only member, or a word that does not fit, is a LineError, and nothing changes.
void SetTaskMember(TaskRecord& task, HostState& state, const std::string& member, const std::string& word);

}  // namespace plovix::script
