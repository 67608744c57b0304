// What of a task's settings cannot work with its data object, for the wizard's side panel.
#pragma once

#include "app_parts.h"

namespace plovix::app {

// Whole sentences. `fields`: of the task's data object, none for a task without records.
[[nodiscard]] std::vector<QString> WarningsOf(const AppParts& parts, const TaskRecord& task,
                                              const std::vector<FieldRecord>& fields);

// The fields to which the task's actions can refer, for whoever can wait; nothing if they are not known.
[[nodiscard]] std::optional<std::vector<FieldRecord>> FieldsFor(const AppParts& parts,
                                                                const TaskRecord& task);

}  // namespace plovix::app
