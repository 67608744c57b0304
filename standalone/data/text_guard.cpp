#include "text_guard.h"

#include <plovix/standalone/query/query_text.h>

#include <set>
#include <string>

namespace plovix {

TextGuard::TextGuard(Connection& connection, bool reads_hidden)
    : connection_(connection), schema_(std::make_shared<SchemaMap>(connection)) {
  connection.Guard(
      [schema = schema_, is_text = is_text_, reads_hidden](std::string_view table, std::string_view column) {
        if (*is_text && schema->OwnerOfShadow(table) != nullptr) return false;
        return schema->MayRead(table, column, reads_hidden);
      });
}

// Internal tables of virtual tables are for these tables' own statements only. Those run with the text, but
// also when a text that names the virtual table is first prepared; so a statement on the virtual table
// alone is prepared first.
Statement TextGuard::Prepare(std::string_view sql, const TimeLimit& time) const {
  std::set<std::string> awake;
  while (true) {
    try {
      return PrepareText(sql);
    } catch (const SqlFailure& failure) {
      const SchemaEntry* owner =
          failure.Refused() ? schema_->OwnerOfShadow(failure.Refused()->name) : nullptr;
      if (owner == nullptr || time.IsOver() || !awake.insert(owner->name).second) throw;
      Wake(*owner);
    }
  }
}

Statement TextGuard::PrepareText(std::string_view sql) const {
  *is_text_ = true;
  const std::unique_ptr<bool, void (*)(bool*)> end(is_text_.get(), [](bool* is_text) { *is_text = false; });
  return connection_.Prepare(sql);
}

// A refusal names the virtual table, because the text may not mention its internal tables.
void TextGuard::Wake(const SchemaEntry& table) const {
  try {
    (void)connection_.Prepare("SELECT 1 FROM " + QuotedName(table.name));
  } catch (const SqlFailure& failure) {
    if (!failure.Refused() || schema_->OwnerOfShadow(failure.Refused()->name) == nullptr) throw;
    throw SqlFailure(failure.Description(), failure.Words(), failure.Offset(),
                     Refusal{Refusal::What::kTable, table.name});
  }
}

}  // namespace plovix
