#include "action_order.h"

#include <plovix/base/failure.h>
#include <plovix/standalone/query/sql_template.h>
#include <plovix/standalone/tasks/action_kinds.h>

#include <nlohmann/json.hpp>

namespace plovix {
namespace {

using Json = nlohmann::ordered_json;

const std::string& Setting(const ActionRecord& action, const std::string& key) {
  static const std::string none;
  const auto found = action.settings.find(key);
  return found == action.settings.end() ? none : found->second;
}

Json ValueJson(const FieldValue& value) {
  if (std::holds_alternative<std::monostate>(value)) return nullptr;
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return *integer;
  if (const auto* real = std::get_if<double>(&value)) return *real;
  return TextOf(value);
}

}  // namespace

ActionOrder OrderOf(const ActionRecord& action, const RecordValues& record, const Secrets& secrets) {
  if (FindActionKind(action.kind) == nullptr) {
    throw Failure(failure_number::kInvalidCall,
                  "this program does not know the kind of action \"" + action.kind + "\"");
  }
  if (const auto problem = CheckStatementToo(action)) {
    throw Failure(failure_number::kInvalidCall,
                  "the setting \"" + std::string(problem->field) + "\" of the action \"" + action.kind +
                      "\" is missing or wrong; open the action to see what is wrong");
  }
  ActionOrder order;
  order.kind = action.kind;
  if (action.kind == "run-program") {
    order.arguments.push_back(Setting(action, "path"));
    for (const TextTemplate& argument : ParseArguments(Setting(action, "arguments")).value)
      order.arguments.push_back(FillForProgram(argument, record));
    order.action = action;
    order.values = record;
  } else if (action.kind == "run-sql") {
    const SqlTemplate statement = ParseStatement(Setting(action, "statement")).value;
    order.statement = statement.sql;
    order.parameters = ParametersOf(statement, record, secrets);
  } else {
    order.text = FillLine(ParseText(Setting(action, "text")).value, record);
    order.file = Setting(action, "file");
  }
  return order;
}

Json OrderJson(const ActionOrder& order) {
  Json json{{"run", order.run},
            {"record", order.record.empty() ? Json() : Json(order.record)},
            {"kind", order.kind}};
  if (!order.arguments.empty()) {
    json["arguments"] = order.arguments;
  } else if (!order.statement.empty()) {
    json["statement"] = order.statement;
    json["parameters"] = Json::array();
    for (const FieldValue& value : order.parameters) json["parameters"].push_back(ValueJson(value));
  } else {
    json["text"] = order.text;
    json["file"] = order.file;
  }
  return json;
}

}  // namespace plovix
