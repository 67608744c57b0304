#include "query_run.h"

#include <plovix/base/utf8.h>
#include <plovix/standalone/query/query_text.h>
#include <plovix/standalone/query/sql_tokens.h>
#include <plovix/standalone/sqlite/connection.h>

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "field_binding.h"
#include "text_guard.h"
#include "time_limit.h"

namespace plovix {
namespace {

// A query reads rows. Other statements can be read-only and still change how the connection works, or open
// other files.
std::optional<QueryProblem> CheckBeginning(std::string_view sql) {
  const SqlToken first = SqlTokens(sql).front();
  if (first.Is("SELECT") || first.Is("WITH") || first.Is("VALUES")) return std::nullopt;
  return QueryProblem{"query.preview.select", {}};
}

// Checks the text before the database sees it.
std::optional<QueryProblem> CheckText(std::string_view sql) {
  if (auto problem = CheckBeginning(sql)) return problem;
  if (StatementCount(sql) > 1) return QueryProblem{"query.preview.second", {}};
  return std::nullopt;
}

QueryProblem ProblemOf(const SqlFailure& failure) {
  if (!failure.Refused()) return {"query.preview.sql", failure.Words()};
  switch (failure.Refused()->what) {
    case Refusal::What::kTable:
      return {"query.preview.table", failure.Refused()->name};
    case Refusal::What::kFunction:
      return {"query.preview.function", failure.Refused()->name};
    case Refusal::What::kAction:
      break;
  }
  return {"query.preview.write", {}};
}

QueryProblem ProblemOfFailure() {
  const Failure failure = CurrentFailure();
  if (failure.Number() == failure_number::kInterrupted) return {"query.preview.tooLong", {}};
  return {"query.preview.file", failure.Description()};
}

void Bind(Statement& statement, const std::vector<BoundValue>& values) {
  int parameter = 0;
  for (const BoundValue& value : values) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) statement.BindInteger(parameter, *whole);
    if (const auto* real = std::get_if<double>(&value)) statement.BindReal(parameter, *real);
    if (const auto* text = std::get_if<std::string>(&value)) statement.BindText(parameter, *text);
    ++parameter;
  }
}

std::string BytesText(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::size_t kMost = 32;
  std::string text = "x'";
  for (const char byte : bytes.substr(0, kMost)) {
    text += kDigits[static_cast<unsigned char>(byte) / 16U];
    text += kDigits[static_cast<unsigned char>(byte) % 16U];
  }
  return text + (bytes.size() > kMost ? "…'" : "'");
}

std::vector<std::optional<std::string>> RowOf(const Statement& statement, int first) {
  std::vector<std::optional<std::string>> row;
  for (int column = first; column < statement.Columns(); ++column) {
    const ColumnType type = statement.Type(column);
    if (type == ColumnType::kNull) {
      row.emplace_back();
    } else {
      const std::string_view text = statement.Text(column);
      row.emplace_back(type == ColumnType::kBlob ? BytesText(text) : Shortened(text, kLongestValue));
    }
  }
  return row;
}

QueryRows ReadRows(Statement& statement, const QueryLimits& limits, const TimeLimit& time) {
  QueryRows result;
  const int first = limits.keys ? 1 : 0;
  for (int column = first; column < statement.Columns(); ++column)
    result.columns.emplace_back(statement.Name(column));
  try {
    while (!time.IsOver() && statement.Step()) {
      if (result.rows.size() < limits.rows) {
        result.rows.push_back(RowOf(statement, first));
        if (limits.keys) result.keys.push_back(KeyOf(FieldIn(statement, 0)));
      }
      ++result.count;
    }
  } catch (const Failure& failure) {
    if (!time.IsOver() || failure.Number() != failure_number::kInterrupted) throw;
  }
  result.complete = !time.IsOver();
  return result;
}

using Read = std::function<QueryRows(Statement&, const TimeLimit&)>;

// Prepares the text if it can only read, and passes it to `read`.
std::variant<QueryRows, QueryProblem> WithStatement(const QueryTarget& target, std::string_view sql,
                                                    const QueryLimits& limits,
                                                    const std::stop_token& unwanted, const Read& read) {
  if (auto problem = CheckText(sql)) return *std::move(problem);
  try {
    Connection connection(target.path, limits.patience, Access::kReadOnly);
    const TimeLimit time(connection, limits.time, unwanted);
    TextGuard guard(connection, target.reads_hidden);
    if (guard.IsTooNested(sql)) return QueryProblem{"query.preview.nested", {}};
    Statement statement = guard.Prepare(sql, time);
    return read(statement, time);
  } catch (const SqlFailure& failure) {
    return ProblemOf(failure);
  } catch (...) {
    return ProblemOfFailure();
  }
}

}  // namespace

std::variant<QueryRows, QueryProblem> RunQuery(const QueryTarget& target, const BoundQuery& query,
                                               const QueryLimits& limits, const std::stop_token& unwanted) {
  return WithStatement(target, query.sql, limits, unwanted,
                       [&query, &limits](Statement& statement, const TimeLimit& time) {
                         Bind(statement, query.values);
                         return ReadRows(statement, limits, time);
                       });
}

std::optional<QueryProblem> CheckQuery(const QueryTarget& target, std::string_view sql,
                                       const std::stop_token& unwanted) {
  auto result =
      WithStatement(target, sql, {}, unwanted, [](Statement&, const TimeLimit&) { return QueryRows(); });
  if (auto* problem = std::get_if<QueryProblem>(&result)) return std::move(*problem);
  return std::nullopt;
}

}  // namespace plovix
