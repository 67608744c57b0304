/// @file
/// The kinds of action that the stand-alone host knows, as data: the editor, the list, the checks and the
/// storage all use these tables.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "task_record.h"

namespace plovix {

/// How a field is edited and checked. Each value is kept as text.
enum class ActionFieldType {
  kText,       ///< one line
  kMultiLine,  ///< any text
  kFile,       ///< the path of a file
  kFolder,     ///< the path of a folder
  kSeconds     ///< a whole number of seconds, 1 to 86400
};

/// One field of a kind of action.
struct ActionField {
  std::string_view key;           ///< of the value in ActionRecord::settings
  std::string_view caption;       ///< key of a host text
  ActionFieldType type;           ///< how it is edited and checked
  bool required;                  ///< must not be empty
  std::string_view initial = {};  ///< in a new action
};

/// One kind of action; lives as long as the program.
struct ActionKind {
  std::string_view id;                  ///< stored; never changes
  std::string_view caption;             ///< key of a host text
  std::int32_t record_modes;            ///< set of record_mode_bit
  std::int32_t capabilities;            ///< set of capability bits
  std::span<const ActionField> fields;  ///< the first one summarizes the action
};

/// All kinds, in the order in which they are offered.
[[nodiscard]] std::span<const ActionKind> ActionKinds();
/// nullptr for a kind that this program does not know.
[[nodiscard]] const ActionKind* FindActionKind(std::string_view id);
/// A new action of the kind, its fields at their initial values.
[[nodiscard]] ActionRecord NewAction(const ActionKind& kind);

/// What is wrong with an action, and in which field.
struct ActionProblem {
  std::string_view field;  ///< key of the field
  std::string_view text;   ///< key of a host text that tells the user
};
/// The first problem; an action of an unknown kind has none.
[[nodiscard]] std::optional<ActionProblem> CheckAction(const ActionRecord& action);

}  // namespace plovix
