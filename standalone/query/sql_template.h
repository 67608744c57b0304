// The SQL statement of an action: its placeholders become parameters, so that a value is never read as SQL.
// Used by the action's editor and where the statement runs.
#pragma once

#include <plovix/standalone/tasks/action_kinds.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

struct SqlTemplate {
  std::string sql;          // with a parameter "?" for each placeholder
  TextTemplate parameters;  // the placeholders in the order of the parameters
};

// Besides what ParseText reports, it is a problem if a placeholder stands in a literal, a quoted name or a
// comment, where the database would not see a parameter; if the text is not exactly one statement, has quotes
// that are not closed or parameters of its own; and if the statement attaches other files, changes the
// connection or loads extensions. Braces within quotes have to be doubled, too.
[[nodiscard]] Parsed<SqlTemplate> ParseStatement(std::string_view text);

// The parameters' values in their order; fails as ValueOf does.
[[nodiscard]] std::vector<FieldValue> ParametersOf(const SqlTemplate& statement, const RecordValues& record,
                                                   const Secrets& secrets);

// CheckAction, and ParseStatement for its SQL statement.
[[nodiscard]] std::optional<ActionProblem> CheckStatementToo(
    const ActionRecord& action, const std::vector<FieldRecord>* fields = nullptr);

}  // namespace plovix
