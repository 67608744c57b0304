// What a dry run would have done, as lines to read. Used by the details of a run.
#pragma once

#include <plovix/standalone/text/text_table.h>

#include <QString>
#include <string>

namespace plovix::app {

// `planned`: as RunRecord has it. A line for each action, below its record; of a long list the beginning.
// What is no such list is shown as it stands.
[[nodiscard]] QString PlannedText(const std::string& planned, const TextTable& texts);

}  // namespace plovix::app
