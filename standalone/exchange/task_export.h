// A task as a file, to be moved from one installation to another; docs/task-export.md describes the format.
// Used by the program's export and import.
#pragma once

#include <plovix/standalone/tasks/task_record.h>
#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/text/text_table.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

inline constexpr std::size_t kLargestExport = 16 * std::size_t{1024} * 1024;  // bytes

struct TaskExport {
  // A task that is not stored: without id, version, time of change and owner, and with every may_... true.
  TaskRecord task;
  bool is_personal = false;  // it had an owner
  std::vector<TagRecord> tags;
  bool operator==(const TaskExport&) const = default;
};

// The tags that the task uses for its texts and categories, in the order of `tags`.
[[nodiscard]] std::vector<TagRecord> TagsUsed(const TaskRecord& task, const std::vector<TagRecord>& all);

// The text of the file, JSON in UTF-8; texts of the task are preserved, whatever bytes they contain. No two
// of `tags` have the same name. Fails with 6 if the file could not be read again: a date outside the years 0
// to 9999, or too large. The failure is described in the language of `texts`.
[[nodiscard]] std::string WriteExport(const TaskRecord& task, const std::vector<TagRecord>& tags,
                                      const TextTable& texts);

// Reads only what WriteExport writes: fails with 5 on the first fault, with the file's `name` and the place
// in it. The failure is described in the language of `texts`.
[[nodiscard]] TaskExport ReadExport(std::string_view text, const std::string& name, const TextTable& texts);

}  // namespace plovix
