// What one action is to do for one record, with every placeholder filled: what a launcher begins, a dry run
// lists and a script prints.
#pragma once

#include <plovix/standalone/tasks/placeholders.h>
#include <plovix/standalone/tasks/task_record.h>

#include <nlohmann/json_fwd.hpp>

namespace plovix {

struct ActionOrder {
  std::int64_t run = 0, epoch = 0;
  std::string record;  // the record's key; empty for a task without records
  std::string kind;    // of the action
  // run-program: the program and its arguments; what else it gets follows from the action and the record
  std::vector<std::string> arguments;
  ActionRecord action;
  RecordValues values;
  // run-sql
  std::string statement;  // with "?" for each parameter
  std::vector<FieldValue> parameters;
  // write-log: one line without its end, and where it goes
  std::string text, file;
};

// `record`: nothing for a task without records. Fails in words for a person: for a kind that this program
// does not know, a setting that is missing or wrong, a field that the record lacks, a secret that is not
// there.
[[nodiscard]] ActionOrder OrderOf(const ActionRecord& action, const RecordValues& record,
                                  const Secrets& secrets);

// One object of the kind's own members: arguments; statement and parameters; text and file.
[[nodiscard]] nlohmann::ordered_json OrderJson(const ActionOrder& order);

}  // namespace plovix
