#include "task_warnings.h"

#include <plovix/base/failure.h>
#include <plovix/host/auto_task.h>
#include <plovix/standalone/data/record_query.h>
#include <plovix/standalone/tasks/action_kinds.h>

namespace plovix::app {
namespace {

std::string ActionName(const AppParts& parts, const ActionRecord& action) {
  const ActionKind* kind = FindActionKind(action.kind);
  return InSentence(action.name.empty() && kind != nullptr ? parts.Text(kind->caption) : action.name);
}

}  // namespace

std::vector<QString> WarningsOf(const AppParts& parts, const TaskRecord& task,
                                const std::vector<FieldRecord>& fields) {
  const bool has_records = task.record_mode != record_mode::kNoData;
  const std::string object = InSentence(task.data_object_caption);
  std::vector<QString> warnings;
  if (has_records && task.base_date != kZeroDate && !ChangeFieldOf(fields))
    warnings.push_back(parts.Shown("summary.noChangeField", {object}));
  for (const ActionRecord& action : task.actions) {
    const auto problem = CheckAction(action, &fields);
    if (!problem || problem->text != "action.problem.field") continue;
    const std::string name = ActionName(parts, action), field = InSentence(problem->parameter);
    warnings.push_back(has_records ? parts.Shown("summary.noField", {name, field, object})
                                   : parts.Shown("summary.noRecordField", {name, field}));
  }
  return warnings;
}

std::optional<std::vector<FieldRecord>> FieldsFor(const AppParts& parts, const TaskRecord& task) {
  std::vector<FieldRecord> fields;
  if (task.record_mode == record_mode::kNoData) return fields;
  if (FailureOf([&] { fields = parts.data->Fields(task.data_object_name); }) || fields.empty())
    return std::nullopt;
  return fields;
}

}  // namespace plovix::app
