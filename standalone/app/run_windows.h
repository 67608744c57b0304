// Opens the windows of runs: their history, a run's details, how a task runs.
#pragma once

#include <plovix/standalone/running/run_parts.h>

#include <cstdint>
#include <optional>

#include "app_parts.h"

namespace plovix::app {

// What those windows work with; asks for names and rights as they are stored then.
[[nodiscard]] RunParts RunPartsOf(const AppParts& parts);
// @{
// Not modal; deleted when closed, or with `parent`.
void ShowHistory(const AppParts& parts, std::optional<std::int64_t> task, QWidget& parent);
void ShowRun(const AppParts& parts, std::int64_t run, QWidget& parent);
// @}
// Lets the user choose the policies of a stored task. Fails as the store does, and with 5 if it is gone.
void EditPolicies(const AppParts& parts, std::int64_t task, QWidget& parent);

}  // namespace plovix::app
