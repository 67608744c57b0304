#include "statement_guard.h"

#include <sqlite3.h>

#include <string>

namespace plovix {
namespace {

// These only compute a value from their arguments or from the rows. Each is between two blanks.
constexpr std::string_view kFunctions =
    " -> ->> abs acos acosh asin asinh atan atan2 atanh avg bm25 ceil ceiling char coalesce "
    "cos cosh count cume_dist current_date current_time current_timestamp date datetime "
    "degrees dense_rank exp first_value floor format glob group_concat hex highlight ifnull "
    "iif instr json json_array json_array_length json_extract json_group_array "
    "json_group_object json_insert json_object json_patch json_quote json_remove "
    "json_replace json_set json_type json_valid julianday lag last_value lead length like "
    "likelihood likely ln log log10 log2 lower ltrim match matchinfo max min mod nth_value "
    "ntile nullif offsets percent_rank pi pow power printf quote radians random randomblob "
    "rank replace round row_number rtrim sign sin sinh snippet soundex sqrt strftime substr "
    "substring sum tan tanh time total trim trunc typeof unhex unicode unixepoch unlikely "
    "upper zeroblob ";

// Pragmas that virtual tables read, without setting anything.
constexpr std::string_view kQuestions = " data_version page_size ";

bool IsAmong(std::string_view list, std::string_view name) {
  return list.find(" " + std::string(name) + " ") != std::string_view::npos;
}

std::string_view View(const char* text) {
  return text == nullptr ? std::string_view() : text;
}

}  // namespace

void StatementGuard::StandOn(sqlite3* database) {
  sqlite3_set_authorizer(database, &StatementGuard::Ask, this);
}

int StatementGuard::Ask(void* self, int action, const char* first, const char* second,
                        const char* /*database*/, const char* /*view*/) noexcept {
  auto* guard = static_cast<StatementGuard*>(self);
  try {
    auto refusal = guard->Judge(action, View(first), View(second));
    if (!refusal) return SQLITE_OK;
    if (!guard->refused_) guard->refused_ = std::move(refusal);
  } catch (...) {  // no memory for the answer
    return SQLITE_DENY;
  }
  return SQLITE_DENY;
}

bool IsHarmlessFunction(std::string_view name) {
  return IsAmong(kFunctions, name);
}

bool IsHarmlessPragma(std::string_view name, std::string_view value) {
  return value.empty() && IsAmong(kQuestions, name);
}

}  // namespace plovix
