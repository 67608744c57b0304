#include "action_kinds.h"

#include <plovix/base/text_rules.h>
#include <plovix/host/action_list.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace plovix {
namespace {

constexpr std::int32_t kEveryRecordMode =
    record_mode_bit::kNoData | record_mode_bit::kSingleRecord | record_mode_bit::kQueryResults;
constexpr int kLongestTimeLimit = 86400;  // seconds; a day

constexpr std::array kRunProgramFields = {
    ActionField{"path", "action.runProgram.path", ActionFieldType::kFile, true},
    ActionField{"arguments", "action.runProgram.arguments", ActionFieldType::kText, false},
    ActionField{"folder", "action.runProgram.folder", ActionFieldType::kFolder, false},
    ActionField{"timeLimit", "action.runProgram.timeLimit", ActionFieldType::kSeconds, true, "60"},
};
constexpr std::array kRunSqlFields = {
    ActionField{"statement", "action.runSql.statement", ActionFieldType::kMultiLine, true},
};
constexpr std::array kWriteLogFields = {
    ActionField{"text", "action.writeLog.text", ActionFieldType::kText, true},
    ActionField{"file", "action.writeLog.file", ActionFieldType::kFile, true},
};

constexpr std::array kKinds = {
    ActionKind{"run-program", "action.runProgram", kEveryRecordMode, kAutomationManagerCapability,
               kRunProgramFields},
    ActionKind{"run-sql", "action.runSql", kEveryRecordMode, kAutomationManagerCapability, kRunSqlFields},
    ActionKind{"write-log", "action.writeLog", kEveryRecordMode, kAutomationManagerCapability,
               kWriteLogFields},
};

bool IsTimeLimit(std::string_view text) {
  int seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  return error == std::errc{} && end == text.data() + text.size() && seconds >= 1 &&
         seconds <= kLongestTimeLimit;
}

}  // namespace

std::span<const ActionKind> ActionKinds() {
  return kKinds;
}

const ActionKind* FindActionKind(std::string_view id) {
  const auto* found = std::ranges::find(kKinds, id, &ActionKind::id);
  return found == kKinds.end() ? nullptr : found;
}

ActionRecord NewAction(const ActionKind& kind) {
  ActionRecord action{std::string(kind.id), "", kind.record_modes, kind.capabilities, {}};
  for (const ActionField& field : kind.fields) action.settings.emplace(field.key, field.initial);
  return action;
}

std::optional<ActionProblem> CheckAction(const ActionRecord& action) {
  const ActionKind* kind = FindActionKind(action.kind);
  if (kind == nullptr) return std::nullopt;  // kept as it is
  for (const ActionField& field : kind->fields) {
    const auto found = action.settings.find(std::string(field.key));
    const std::string_view value =
        found == action.settings.end() ? std::string_view{} : Trimmed(found->second);
    if (field.required && value.empty()) return ActionProblem{field.key, "action.problem.missing"};
    if (field.type == ActionFieldType::kSeconds && !IsTimeLimit(value)) {
      return ActionProblem{field.key, "action.problem.timeLimit"};
    }
  }
  return std::nullopt;
}

}  // namespace plovix
