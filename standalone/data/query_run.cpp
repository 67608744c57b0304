#include "query_run.h"

#include <plovix/standalone/query/sql_tokens.h>
#include <plovix/standalone/sqlite/connection.h>

#include "time_limit.h"

namespace plovix {
namespace {

// A query reads rows. Other statements can count as reading and still change how the connection works, or
// open other files.
std::optional<QueryProblem> CheckBeginning(std::string_view sql) {
  const SqlToken first = SqlTokens(sql).front();
  if (first.Is("SELECT") || first.Is("WITH") || first.Is("VALUES")) return std::nullopt;
  return QueryProblem{"query.preview.select", {}};
}

std::optional<QueryProblem> CheckPrepared(const Statement& statement) {
  if (!statement.IsReadOnly()) return QueryProblem{"query.preview.write", {}};
  if (statement.HasTail()) return QueryProblem{"query.preview.second", {}};
  return std::nullopt;
}

QueryProblem ProblemOfFailure() {
  const Failure failure = CurrentFailure();
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

// Not in the middle of a character.
std::string Cut(std::string_view text) {
  if (text.size() <= kLongestValue) return std::string(text);
  std::size_t length = kLongestValue;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  return std::string(text.substr(0, length)) + "…";
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

std::vector<std::optional<std::string>> RowOf(const Statement& statement) {
  std::vector<std::optional<std::string>> row;
  for (int column = 0; column < statement.Columns(); ++column) {
    const ColumnType type = statement.Type(column);
    if (type == ColumnType::kNull) {
      row.emplace_back();
    } else {
      const std::string_view text = statement.Text(column);
      row.emplace_back(type == ColumnType::kBlob ? BytesText(text) : Cut(text));
    }
  }
  return row;
}

QueryRows ReadRows(Statement& statement, const QueryLimits& limits, const TimeLimit& time) {
  QueryRows result;
  for (int column = 0; column < statement.Columns(); ++column)
    result.columns.emplace_back(statement.Name(column));
  try {
    while (!time.IsOver() && statement.Step()) {
      if (result.rows.size() < limits.rows) result.rows.push_back(RowOf(statement));
      ++result.count;
    }
  } catch (const Failure& failure) {
    if (!time.IsOver() || failure.Number() != failure_number::kInterrupted) throw;
  }
  result.complete = !time.IsOver();
  return result;
}

}  // namespace

std::variant<QueryRows, QueryProblem> RunQuery(const std::string& path, const BoundQuery& query,
                                               const QueryLimits& limits, const std::stop_token& unwanted) {
  if (auto problem = CheckBeginning(query.sql)) return *std::move(problem);
  try {
    const Connection connection(path, limits.patience, Access::kReadOnly);
    const TimeLimit time(connection, limits.time, unwanted);
    Statement statement = connection.Prepare(query.sql);
    if (auto problem = CheckPrepared(statement)) return *std::move(problem);
    Bind(statement, query.values);
    return ReadRows(statement, limits, time);
  } catch (const SqlFailure& failure) {
    return QueryProblem{"query.preview.sql", failure.Words()};
  } catch (...) {
    return ProblemOfFailure();
  }
}

std::optional<QueryProblem> CheckQuery(const std::string& path, std::string_view sql) {
  if (auto problem = CheckBeginning(sql)) return problem;
  try {
    const Connection connection(path, QueryLimits{}.patience, Access::kReadOnly);
    return CheckPrepared(connection.Prepare(sql));
  } catch (const SqlFailure& failure) {
    return QueryProblem{"query.preview.sql", failure.Words()};
  } catch (...) {
    return ProblemOfFailure();
  }
}

}  // namespace plovix
