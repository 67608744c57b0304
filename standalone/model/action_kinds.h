// The kinds of action that the stand-alone host knows, as data: the editor, the list, the checks and the
// storage are all written against these tables.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "task_record.h"

namespace plovix {

enum class ActionFieldType { kText, kMultiLine, kFile, kFolder, kSeconds };

struct ActionField {
  std::string_view key;      // under which the value stands in ActionRecord::settings
  std::string_view caption;  // key of a host text
  ActionFieldType type;
  bool required;
  std::string_view initial = {};
};

struct ActionKind {
  std::string_view id;       // stored; never changes
  std::string_view caption;  // key of a host text
  std::int32_t record_modes;
  std::int32_t capabilities;
  std::span<const ActionField> fields;  // the first one sums the action up
};

[[nodiscard]] std::span<const ActionKind> ActionKinds();
// nullptr for a kind that this program does not know.
[[nodiscard]] const ActionKind* FindActionKind(std::string_view id);
// A new action of the kind, its fields at their initial values.
[[nodiscard]] ActionRecord NewAction(const ActionKind& kind);

// What is wrong with an action, at which field; nothing when it is fit to be stored.
struct ActionProblem {
  std::string_view field;  // key of the field
  std::string_view text;   // key of a host text that tells the user
};
[[nodiscard]] std::optional<ActionProblem> CheckAction(const ActionRecord& action);

}  // namespace plovix
