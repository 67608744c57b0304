/// @file
/// The kinds of action that the stand-alone host knows, as data: the editor, the list, the checks and the
/// storage all use these tables.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "placeholders.h"
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

/// What placeholders a field takes, and how its text is divided before they are filled.
enum class Placeholders {
  kNone,       ///< braces have no meaning
  kText,       ///< ParseText
  kArguments,  ///< ParseArguments
  kVariables,  ///< ParseVariables; may refer to secrets
  kStatement   ///< an SQL statement, whose placeholders become parameters; may refer to secrets
};

/// One field of a kind of action.
struct ActionField {
  std::string_view key;                             ///< of the value in ActionRecord::settings
  std::string_view caption;                         ///< key of a host text
  ActionFieldType type;                             ///< how it is edited and checked
  bool required;                                    ///< must not be empty
  std::string_view initial = {};                    ///< in a new action
  Placeholders placeholders = Placeholders::kNone;  ///< what it takes
};

/// One kind of action; lives as long as the program.
struct ActionKind {
  std::string_view id;                  ///< stored; never changes
  std::string_view caption;             ///< key of a host text
  std::int32_t record_modes;            ///< set of record_mode_bit
  std::int32_t capabilities;            ///< set of capability bits
  std::span<const ActionField> fields;  ///< the first one summarizes the action
  bool runs_code = false;               ///< it runs programs or SQL, which needs a right of its own
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
  std::string parameter;   ///< of the host text; may be empty
  std::size_t offset = 0;  ///< where in the field's text, in bytes
  std::size_t length = 0;  ///< of what is wrong, in bytes; 0: the whole field, or something is missing
};
/// The first problem; an action of an unknown kind has none. `fields`: of the data object on whose records
/// the task works, none for a task without records; nullptr: unknown, so that every field is accepted. What
/// is wrong with an SQL statement as such is found by CheckStatementToo, of the room standalone/query.
[[nodiscard]] std::optional<ActionProblem> CheckAction(const ActionRecord& action,
                                                       const std::vector<FieldRecord>* fields = nullptr);

/// For an action that was stored when braces had no meaning: doubles those in the fields that take
/// placeholders, so that the action does what it did.
void DoubleBraces(ActionRecord& action);

}  // namespace plovix
