#include "memory_records.h"

#include <plovix/base/failure.h>
#include <plovix/base/same_name.h>
#include <plovix/standalone/query/query_text.h>
#include <plovix/standalone/text/iso_time.h>
#include <sqlite3.h>

#include <algorithm>

#include "record_query.h"

namespace plovix {
namespace {

constexpr std::string_view kChanged = "changed";

using Prepared = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

[[noreturn]] void FailInWords(sqlite3* database, const std::string& what) {
  throw Failure(failure_number::kInvalidCall, what + ": " + sqlite3_errmsg(database));
}

void BindTo(sqlite3_stmt* statement, int parameter, const FieldValue& value) {
  const auto length = [](const std::string& text) { return static_cast<int>(text.size()); };
  if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    sqlite3_bind_int64(statement, parameter, *integer);
  } else if (const auto* real = std::get_if<double>(&value)) {
    sqlite3_bind_double(statement, parameter, *real);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    sqlite3_bind_text(statement, parameter, text->data(), length(*text), SQLITE_TRANSIENT);
  }
}

FieldValue ColumnOf(sqlite3_stmt* row, int column) {
  switch (sqlite3_column_type(row, column)) {
    case SQLITE_INTEGER:
      return sqlite3_column_int64(row, column);
    case SQLITE_FLOAT:
      return sqlite3_column_double(row, column);
    case SQLITE_NULL:
      return {};
    default:
      break;
  }
  const auto* text = static_cast<const char*>(sqlite3_column_blob(row, column));
  return std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(row, column)));
}

class MemoryPass final : public RecordPass {
 public:
  MemoryPass(std::vector<RecordValues> rows, std::string key, std::vector<std::string> keys, bool tells)
      : rows_(std::move(rows)), key_(std::move(key)), keys_(std::move(keys)), tells_(tells) {}

  std::optional<SourceRecord> Next() override {
    while (next_ < rows_.size()) {
      SourceRecord record;
      record.values = rows_[next_++];
      record.key = KeyOf(*FindValue(record.values, key_));
      if (!keys_.empty() && std::ranges::find(keys_, record.key) == keys_.end()) continue;
      const FieldValue* changed = tells_ ? FindValue(record.values, kChanged) : nullptr;
      if (changed != nullptr && !std::holds_alternative<std::monostate>(*changed)) {
        record.change = TextOf(*changed);
        record.changed_at = ParseIsoDateTime(*record.change);
      }
      return record;
    }
    return std::nullopt;
  }
  bool TellsChange() const override { return tells_; }

 private:
  std::vector<RecordValues> rows_;
  std::string key_;
  std::vector<std::string> keys_;
  bool tells_;
  std::size_t next_ = 0;
};

}  // namespace

void MemoryRecords::Close::operator()(sqlite3* database) const noexcept {
  sqlite3_close_v2(database);
}

MemoryRecords::MemoryRecords(DataSource& objects) : objects_(objects) {
  sqlite3* database = nullptr;
  sqlite3_open(":memory:", &database);
  database_.reset(database);
}

MemoryRecords::~MemoryRecords() = default;

DataObjectRecord MemoryRecords::Table(const std::string& name) {
  const auto object = objects_.Find(name);
  if (!object) throw Failure(failure_number::kInvalidCall, "there is no data object \"" + name + "\"");
  if (object->key.empty()) {
    throw Failure(failure_number::kInvalidCall,
                  "the data object \"" + name + "\" has no field that tells its records apart");
  }
  Run("CREATE TABLE IF NOT EXISTS " + QuotedName(object->name) + " (" + QuotedName(object->key) +
          " NOT NULL PRIMARY KEY)",
      {});
  return *object;
}

void MemoryRecords::AddColumn(const std::string& table, const std::string& column) {
  const auto present = Rows("SELECT name FROM pragma_table_info(" + QuotedName(table) + ")");
  const bool is_there = std::ranges::any_of(
      present, [&](const RecordValues& row) { return SameName(TextOf(row.front().value), column); });
  if (!is_there) Run("ALTER TABLE " + QuotedName(table) + " ADD COLUMN " + QuotedName(column), {});
}

void MemoryRecords::Put(const std::string& object, const FieldValue& key, const RecordValues& values) {
  const DataObjectRecord table = Table(object);
  const std::string name = QuotedName(table.name), key_name = QuotedName(table.key);
  Run("INSERT OR IGNORE INTO " + name + " (" + key_name + ") VALUES (?)", {key});
  const std::string with_key = " = ? WHERE " + key_name + " = ?";
  for (const auto& [field, value] : values) {
    AddColumn(table.name, field);
    std::string update = "UPDATE " + name + " SET ";
    update.append(QuotedName(field)).append(with_key);
    Run(update, {value, key});
  }
}

void MemoryRecords::Remove(const std::string& object, const FieldValue& key) {
  const DataObjectRecord table = Table(object);
  Run("DELETE FROM " + QuotedName(table.name) + " WHERE " + QuotedName(table.key) + " = ?", {key});
}

// The query says which records; their fields are all those of the data object.
std::unique_ptr<RecordPass> MemoryRecords::Open(const TaskRecord& task,
                                                const std::vector<std::string>& keys) {
  const DataObjectRecord table = Table(task.data_object_name);
  auto rows = Rows("SELECT * FROM " + QuotedName(table.name) + " AS r WHERE r." + QuotedName(table.key) +
                   " IN (" + KeysStatement(table, task.query) + ") ORDER BY r." + QuotedName(table.key));
  const bool tells = !rows.empty() && FindValue(rows.front(), kChanged) != nullptr;
  return std::make_unique<MemoryPass>(std::move(rows), table.key, keys, tells);
}

void MemoryRecords::Run(const std::string& sql, const std::vector<FieldValue>& values) {
  sqlite3_stmt* raw = nullptr;
  if (sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &raw, nullptr) != SQLITE_OK)
    FailInWords(database_.get(), "the records cannot be stored");
  const Prepared statement(raw, sqlite3_finalize);
  int parameter = 0;
  for (const FieldValue& value : values) BindTo(statement.get(), ++parameter, value);
  if (sqlite3_step(statement.get()) != SQLITE_DONE)
    FailInWords(database_.get(), "the records cannot be stored");
}

std::vector<RecordValues> MemoryRecords::Rows(const std::string& sql) {
  sqlite3_stmt* raw = nullptr;
  if (sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &raw, nullptr) != SQLITE_OK)
    FailInWords(database_.get(), "the query cannot be run");
  const Prepared statement(raw, sqlite3_finalize);
  std::vector<RecordValues> rows;
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(statement.get())) == SQLITE_ROW) {
    RecordValues& row = rows.emplace_back();
    for (int column = 0; column < sqlite3_column_count(statement.get()); ++column)
      row.push_back({sqlite3_column_name(statement.get(), column), ColumnOf(statement.get(), column)});
  }
  if (step != SQLITE_DONE) FailInWords(database_.get(), "the query cannot be run");
  return rows;
}

}  // namespace plovix
