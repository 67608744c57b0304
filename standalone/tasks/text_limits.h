/// @file
/// How long the texts of a task may be. All ways in - windows, imports, storages - enforce this, so that no
/// list, window or file has to cope with more. docs/task-export.md documents it for users.
#pragma once

#include <plovix/base/failure.h>
#include <plovix/base/utf8.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "task_fields.h"

namespace plovix {

/// @{
/// In characters (code points). Names are shown on one line: names, short descriptions, tags, captions,
/// categories, kinds, subjects, the keys of settings. Texts are read or run as a whole: descriptions,
/// queries, settings of actions, the texts of language tags.
inline constexpr std::size_t kLongestName = 1'000;
inline constexpr std::size_t kLongestText = 100'000;
/// @}

/// Whether `text`, UTF-8, has more than `most` characters.
[[nodiscard]] inline bool IsLongerThan(std::string_view text, std::size_t most) {
  if (text.size() <= most) return false;  // the usual case
  return std::cmp_greater(CharacterCount(text), most);
}

/// The maximum length of a field in the tables of task_fields.h.
template <class Record>
[[nodiscard]] constexpr std::size_t LongestIn(std::string Record::*field) {
  if constexpr (std::is_same_v<Record, TaskRecord>) {
    return field == &TaskRecord::description || field == &TaskRecord::query ? kLongestText : kLongestName;
  }
  return kLongestName;
}

/// Fails with 5 and a message that names `what` if a text is longer than `most` characters.
inline void CheckLength(std::string_view what, std::string_view text, std::size_t most) {
  if (!IsLongerThan(text, most)) return;
  throw Failure(failure_number::kInvalidCall,
                std::string(what) + " is longer than " + std::to_string(most) + " characters");
}

/// Fails with 5 and a message that names the field if a text of the record is too long; `fields` is its
/// table.
template <class Fields, class Record>
void CheckLengths(const Fields& fields, const Record& record) {
  ForEachField(fields, [&](std::string_view name, auto field) {
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(record.*field)>, std::string>)
      CheckLength(name, record.*field, LongestIn(field));
  });
}

/// To be called before a task is stored: fails with 5 if one of its texts is too long.
inline void CheckTexts(const TaskRecord& task) {
  CheckLengths(kTaskFields, task);
  for (const CategoryRecord& category : task.categories) CheckLengths(kCategoryFields, category);
  for (const PermissionRecord& line : task.permissions.value_or(PermissionSet()))
    CheckLengths(kPermissionFields, line);
  for (const ActionRecord& action : task.actions) {
    CheckLengths(kActionFields, action);
    for (const auto& [key, value] : action.settings) {
      CheckLength("The name of a setting", key, kLongestName);
      CheckLength(key, value, kLongestText);
    }
  }
}

}  // namespace plovix
