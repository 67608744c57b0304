// The members of a task's recurrence and of its pattern by their documented names, for setting and for
// printing. Used by the task's members.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace plovix::script {

// null, or the members; "Pattern" is null, or the members of its class behind "kind".
[[nodiscard]] nlohmann::ordered_json RecurrenceJson(const std::optional<RecurrenceRecord>& recurrence);

// Sets "TimeKind", "Pattern", "Pattern.EveryNDays", "Pattern.Day.2" ... from a script's word and makes the
// recurrence and the pattern that this takes. A member that there is not, or a word that it cannot hold, is
// a LineError, and nothing has changed.
void SetRecurrenceMember(std::optional<RecurrenceRecord>& recurrence, const std::string& member,
                         const std::string& word);

}  // namespace plovix::script
