/// @file
/// A task as plain values that are stored, listed, compared and copied.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "permission_record.h"
#include "recurrence_record.h"

namespace plovix {

/// A category of a task.
struct CategoryRecord {
  std::string tag;        ///< language tag; a tag without a text is its own text
  bool is_public = true;  ///< whether everybody may see it
  bool operator==(const CategoryRecord&) const = default;
};

/// An action of a task.
struct ActionRecord {
  std::string kind;               ///< identifier of an ActionKind; may be unknown to this program
  std::string name;               ///< what the user calls it; may be empty
  std::int32_t record_modes = 0;  ///< set of record_mode_bit
  std::int32_t capabilities = 0;  ///< set of capability bits
  std::map<std::string, std::string> settings;  ///< by the kind's field keys
  bool operator==(const ActionRecord&) const = default;
};

/// A task. Members without a comment are described in AutoTask.
struct TaskRecord {
  std::int64_t id = 0;            ///< 0: not stored yet
  std::int64_t version = 0;       ///< changes with every save; a save based on an older version is refused
  DateTime modified = kZeroDate;  ///< when it was saved last, by the host's clock
  std::string saved_by;           ///< the id of the user who saved it last; empty: unknown
  bool held = false;              ///< imported, and nobody has looked at it and released it; nothing runs it

  /// @{
  /// As AutoTask's member of that name.
  std::int16_t record_mode = 0;
  bool uses_language_tags = false;
  std::string name, short_description, description;
  std::string name_tag, short_description_tag, description_tag;
  std::vector<CategoryRecord> categories;
  std::string data_object_name, data_object_caption;
  bool allow_automation_manager = false;
  bool skip_row_selection = false;
  std::int32_t processing_mode = 0;
  bool process_all_records = false;
  bool process_failed_records = false;
  DateTime base_date = kZeroDate;
  std::string query;
  std::string owner;  ///< the id of a personal task's owner, otherwise empty
  /// Nothing: no permission set; users may do with the task what their rights allow.
  std::optional<PermissionSet> permissions;
  /// @}
  /// @{
  /// What the user who last saved the task was allowed to do with tasks on its data object.
  bool may_run = true, may_edit = true, may_delete = true;
  /// @}
  std::optional<RecurrenceRecord> recurrence;  ///< nothing: no schedule
  /// The day from which the schedule's intervals are counted: set when the schedule is first saved; nothing
  /// before that and without a schedule.
  std::optional<std::chrono::local_days> schedule_start;
  std::vector<ActionRecord> actions;  ///< in the order in which they run

  bool operator==(const TaskRecord&) const = default;
};

/// Without a schedule there is nothing to count from its start.
inline void DropUnusedStart(TaskRecord& task) {
  if (!task.recurrence) task.schedule_start.reset();
}

/// To be called before a task is stored: a schedule that is stored for the first time starts on the day of
/// `now`; a removed schedule has no start.
inline void StartSchedule(TaskRecord& task, DateTime now) {
  DropUnusedStart(task);
  if (task.recurrence && !task.schedule_start)
    task.schedule_start = std::chrono::floor<std::chrono::days>(now);
}

}  // namespace plovix
