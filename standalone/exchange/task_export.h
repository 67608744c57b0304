/// @file
/// A task as text, to be taken from one installation to another, or to be kept by a host that stores texts:
/// docs/task-export.md describes the format.
#pragma once

#include <plovix/standalone/tasks/task_record.h>
#include <plovix/standalone/tasks/users_and_tags.h>
#include <plovix/standalone/text/text_table.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

/// In bytes.
inline constexpr std::size_t kLargestExport = 16 * std::size_t{1024} * 1024;

/// What such a text holds.
struct TaskExport {
  /// A task that is not stored: without id, version, time of change and owner, with every may_... true.
  TaskRecord task;
  bool is_personal = false;     ///< it had an owner
  std::vector<TagRecord> tags;  ///< that the task names
  bool operator==(const TaskExport&) const = default;
};

/// Of all tags, in their order, those that the task names: for its texts and for its categories.
[[nodiscard]] std::vector<TagRecord> TagsUsed(const TaskRecord& task, const std::vector<TagRecord>& all);

/// The text of the file, JSON in UTF-8; texts of the task come back as they are, whatever bytes they hold. No
/// two of `tags` have the same name.
/// Fails with 6 where the file could not be read again: a date outside the years 0 to 9999, too large. The
/// failure is told in the language of `texts`.
[[nodiscard]] std::string WriteExport(const TaskRecord& task, const std::vector<TagRecord>& tags,
                                      const TextTable& texts);

/// Reads what WriteExport writes and nothing else: fails with 5 on the first thing that is wrong, names
/// `name`, the file's, and the place in it. The failure is told in the language of `texts`.
[[nodiscard]] TaskExport ReadExport(std::string_view text, const std::string& name, const TextTable& texts);

}  // namespace plovix
