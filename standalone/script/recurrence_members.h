// The members of a task's recurrence and of its pattern by their documented names, for setting and for
// printing. Used by the task's members.
#pragma once

#include <plovix/standalone/tasks/recurrence_record.h>

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace plovix::script {

// null, or the members; "Pattern" is null, or "kind" followed by the members of its class.
[[nodiscard]] nlohmann::ordered_json RecurrenceJson(const std::optional<RecurrenceRecord>& recurrence);

// Sets "TimeKind", "Pattern", "Pattern.EveryNDays", "Pattern.Day.2" ... from a script's word and creates the
// recurrence and the pattern if needed. An unknown member or a word that does not fit is a LineError, and
// nothing changes.
void SetRecurrenceMember(std::optional<RecurrenceRecord>& recurrence, const std::string& member,
                         const std::string& word);

}  // namespace plovix::script
