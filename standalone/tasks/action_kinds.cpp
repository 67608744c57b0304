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
    ActionField{"arguments", "action.runProgram.arguments", ActionFieldType::kText, false, "",
                Placeholders::kArguments},
    ActionField{"variables", "action.runProgram.variables", ActionFieldType::kMultiLine, false, "",
                Placeholders::kVariables},
    ActionField{"folder", "action.runProgram.folder", ActionFieldType::kFolder, false},
    ActionField{"timeLimit", "action.runProgram.timeLimit", ActionFieldType::kSeconds, true, "60"},
};
constexpr std::array kRunSqlFields = {
    ActionField{"statement", "action.runSql.statement", ActionFieldType::kMultiLine, true, "",
                Placeholders::kStatement},
};
constexpr std::array kWriteLogFields = {
    ActionField{"text", "action.writeLog.text", ActionFieldType::kText, true, "", Placeholders::kText},
    ActionField{"file", "action.writeLog.file", ActionFieldType::kFile, true},
};

constexpr std::array kKinds = {
    ActionKind{"run-program", "action.runProgram", kEveryRecordMode, kAutomationManagerCapability,
               kRunProgramFields, true},
    ActionKind{"run-sql", "action.runSql", kEveryRecordMode, kAutomationManagerCapability, kRunSqlFields,
               true},
    ActionKind{"write-log", "action.writeLog", kEveryRecordMode, kAutomationManagerCapability,
               kWriteLogFields},
};

bool IsTimeLimit(std::string_view text) {
  int seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  return error == std::errc{} && end == text.data() + text.size() && seconds >= 1 &&
         seconds <= kLongestTimeLimit;
}

std::optional<TextProblem> CheckNamesIn(const std::vector<TextTemplate>& texts, const KnownNames& known) {
  for (const TextTemplate& text : texts) {
    if (auto problem = CheckNames(text, known)) return problem;
  }
  return std::nullopt;
}

std::optional<TextProblem> CheckPlaceholders(Placeholders takes, std::string_view text,
                                             const std::vector<FieldRecord>* fields) {
  switch (takes) {
    case Placeholders::kNone:
      return std::nullopt;
    case Placeholders::kText:
    case Placeholders::kStatement: {
      const auto parsed = ParseText(text);
      const KnownNames known{fields, takes == Placeholders::kStatement};
      return parsed.problem ? parsed.problem : CheckNames(parsed.value, known);
    }
    case Placeholders::kArguments: {
      const auto parsed = ParseArguments(text);
      return parsed.problem ? parsed.problem : CheckNamesIn(parsed.value, {fields, false});
    }
    case Placeholders::kVariables: {
      const auto parsed = ParseVariables(text);
      std::vector<TextTemplate> values;
      values.reserve(parsed.value.size());
      for (const VariableTemplate& variable : parsed.value) values.push_back(variable.value);
      return parsed.problem ? parsed.problem : CheckNamesIn(values, {fields, true});
    }
  }
  return std::nullopt;
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

std::optional<ActionProblem> CheckAction(const ActionRecord& action, const std::vector<FieldRecord>* fields) {
  const ActionKind* kind = FindActionKind(action.kind);
  if (kind == nullptr) return std::nullopt;  // kept as it is
  for (const ActionField& field : kind->fields) {
    const auto found = action.settings.find(std::string(field.key));
    const std::string_view text = found == action.settings.end() ? std::string_view{} : found->second;
    const std::string_view value = Trimmed(text);
    if (field.required && value.empty()) return ActionProblem{field.key, "action.problem.missing", {}};
    if (field.type == ActionFieldType::kSeconds && !IsTimeLimit(value))
      return ActionProblem{field.key, "action.problem.timeLimit", {}};
    if (const auto problem = CheckPlaceholders(field.placeholders, text, fields))
      return ActionProblem{field.key, problem->text, problem->parameter, problem->offset, problem->length};
  }
  return std::nullopt;
}

void DoubleBraces(ActionRecord& action) {
  const ActionKind* kind = FindActionKind(action.kind);
  if (kind == nullptr) return;
  for (const ActionField& field : kind->fields) {
    const auto found = action.settings.find(std::string(field.key));
    if (found != action.settings.end() && field.placeholders != Placeholders::kNone)
      found->second = WithDoubledBraces(found->second);
  }
}

}  // namespace plovix
