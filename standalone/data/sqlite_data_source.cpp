#include "sqlite_data_source.h"

#include <plovix/base/same_name.h>
#include <plovix/standalone/query/query_text.h>
#include <plovix/standalone/tasks/text_limits.h>
#include <plovix/standalone/text/fold_case.h>

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "primary_key.h"
#include "time_limit.h"

namespace plovix {
namespace {

// The time limit for examining computed fields.
constexpr std::chrono::milliseconds kGlance{250};

constexpr auto kTypes =
    std::to_array<std::pair<std::string_view, FieldType>>({{"BOOL", FieldType::kBoolean},
                                                           {"DATETIME", FieldType::kDateTime},
                                                           {"TIMESTAMP", FieldType::kDateTime},
                                                           {"DATE", FieldType::kDate},
                                                           {"INT", FieldType::kInteger},
                                                           {"CHAR", FieldType::kText},
                                                           {"CLOB", FieldType::kText},
                                                           {"TEXT", FieldType::kText},
                                                           {"BLOB", FieldType::kBinary},
                                                           {"REAL", FieldType::kReal},
                                                           {"FLOA", FieldType::kReal},
                                                           {"DOUB", FieldType::kReal},
                                                           {"NUMERIC", FieldType::kReal},
                                                           {"DECIMAL", FieldType::kReal}});

struct Column {
  std::string name, declared;
};

std::vector<Column> ColumnsOf(const Connection& connection, std::string_view name) {
  std::vector<Column> columns;
  const Statement statement = connection.Prepare("SELECT * FROM " + QuotedName(name));
  columns.reserve(static_cast<std::size_t>(statement.Columns()));
  for (int i = 0; i < statement.Columns(); ++i)
    columns.push_back({std::string(statement.Name(i)), std::string(statement.DeclaredType(i))});
  return columns;
}

bool IsBuiltTooHigh(SchemaMap& schema, std::string_view name) {
  return schema.SelectsIn("SELECT * FROM " + QuotedName(name)) > kMostSelects;
}

// A view that cannot be read has none; reading it reports why.
std::string KeyOfView(const Connection& connection, SchemaMap& schema, std::string_view name) {
  if (IsBuiltTooHigh(schema, name)) return {};
  try {
    for (const Column& column : ColumnsOf(connection, name)) {
      if (SameName(column.name, "id")) return column.name;
    }
  } catch (const SqlFailure&) {
    return {};
  }
  return {};
}

using Keys = std::vector<std::string>;  // of the schema's entries

std::vector<DataObjectRecord> ReadObjects(const Connection& connection, SchemaMap& schema, Keys keys) {
  std::vector<std::pair<std::string, DataObjectRecord>> sorted;  // by caption, ignoring case
  sorted.reserve(keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const SchemaEntry& entry = schema.Entries()[i];
    const bool is_view = entry.kind == SchemaEntry::Kind::kView;
    if (IsLongerThan(entry.name, kLongestName)) continue;
    if (schema.OwnerOfShadow(entry.name) != nullptr) continue;
    if (!schema.MayRead(entry.name, {}, true)) continue;
    DataObjectRecord object{.name = entry.name,
                            .caption = CaptionOf(entry.name),
                            .key = is_view ? KeyOfView(connection, schema, entry.name) : std::move(keys[i]),
                            .reads_hidden = entry.reads_hidden};
    std::string folded = FoldCase(object.caption);
    sorted.emplace_back(std::move(folded), std::move(object));
  }
  std::ranges::sort(sorted, {}, [](const auto& item) {
    return std::tuple<std::string_view, std::string_view>(item.first, item.second.name);
  });
  std::vector<DataObjectRecord> objects;
  objects.reserve(sorted.size());
  for (auto& [folded, object] : sorted) objects.push_back(std::move(object));
  return objects;
}

FieldType TypeOfValues(std::string_view storage_class) {
  if (storage_class == "integer" || storage_class == "real") return FieldType::kReal;
  return storage_class == "blob" ? FieldType::kBinary : FieldType::kText;
}

// The values of a field without a declaration are compared as they are stored: a number that is compared with
// a text would never be equal to it.
void LookAtUndeclared(Connection& connection, std::string_view object, const std::vector<Column>& columns,
                      std::vector<FieldRecord>& fields) {
  std::string sql;
  std::vector<FieldRecord*> undeclared;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!columns[i].declared.empty()) continue;
    sql += (sql.empty() ? "SELECT typeof(" : ", typeof(") + QuotedName(columns[i].name) + ")";
    undeclared.push_back(&fields[i]);
  }
  if (undeclared.empty()) return;
  const TimeLimit limit(connection, kGlance);
  try {
    Statement statement = connection.Prepare(sql + " FROM " + QuotedName(object) + " LIMIT 1");
    if (!statement.Step()) return;
    for (std::size_t i = 0; i < undeclared.size(); ++i)
      undeclared[i]->type = TypeOfValues(statement.Text(static_cast<int>(i)));
  } catch (const SqlFailure&) {
    return;  // a view of something that no longer exists
  } catch (const Failure&) {
    if (!limit.IsOver()) throw;
  }
}

}  // namespace

void SqliteDataSource::Reading(const std::function<void(Connection&)>& body) {
  try {
    if (connection_ && FileAt(path_) != file_) connection_.reset();
    if (!connection_) {
      connection_ = std::make_unique<Connection>(path_, patience_, Access::kReadOnly);
      file_ = FileAt(path_);
    }
    const TimeLimit time(*connection_, longest_, unwanted_);
    body(*connection_);
  } catch (...) {
    const Failure failure = CurrentFailure();
    connection_.reset();
    if (failure.Number() != failure_number::kInterrupted) throw;
    throw Failure(failure.Number(), path_ + ": reading the data takes too long and was given up");
  }
}

// Another program may change the file while it is read; the list belongs to the state before that.
const std::vector<DataObjectRecord>& SqliteDataSource::Listed() {
  const FileState state = StateOf(path_);
  if (!listed_ || state.in_use || *listed_ != state) {
    listed_.reset();
    Reading([this](Connection& connection) {
      Keys keys;
      connection.Guard({});
      schema_ =
          std::make_shared<SchemaMap>(connection, [&keys](const SchemaEntry& entry, std::string_view sql) {
            keys.push_back(entry.kind == SchemaEntry::Kind::kTable ? SinglePrimaryKey(sql) : std::string());
          });
      // Everybody may know the fields; whether they may be used is checked elsewhere.
      connection.Guard([schema = schema_](std::string_view table, std::string_view column) {
        return schema->MayRead(table, column, true);
      });
      objects_ = ReadObjects(connection, *schema_, std::move(keys));
    });
    listed_ = state;
  }
  return objects_;
}

std::vector<DataObjectRecord> SqliteDataSource::List() {
  return Listed();
}

std::optional<DataObjectRecord> SqliteDataSource::Find(std::string_view name) {
  for (const DataObjectRecord& object : Listed()) {
    if (SameName(object.name, name)) return object;
  }
  return std::nullopt;
}

std::vector<FieldRecord> SqliteDataSource::Fields(std::string_view name) {
  std::vector<FieldRecord> fields;
  (void)Listed();
  if (schema_->Find(name) == nullptr) return fields;
  Reading([&fields, name, this](Connection& connection) {
    if (IsBuiltTooHigh(*schema_, name)) {
      connection.Refuse(failure_number::kInvalidCall,
                        "\"" + std::string(name) + "\" is built on more views than can be read");
    }
    const std::vector<Column> columns = ColumnsOf(connection, name);
    for (const Column& column : columns) fields.push_back({column.name, FieldTypeOf(column.declared)});
    LookAtUndeclared(connection, name, columns, fields);
  });
  return fields;
}

FieldType FieldTypeOf(std::string_view declared) {
  for (const auto& [part, field_type] : kTypes) {
    if (!std::ranges::search(declared, part, {}, LowerAscii, LowerAscii).empty()) return field_type;
  }
  return FieldType::kText;
}

std::string CaptionOf(std::string_view name) {
  std::string caption(name);
  std::ranges::replace(caption, '_', ' ');
  if (caption.empty()) return caption;
  constexpr char kCaseBit = 0x20;
  const auto lower = [](char letter, char first, char last) { return letter >= first && letter <= last; };
  if (lower(caption[0], 'a', 'z')) {
    caption[0] = static_cast<char>(caption[0] - kCaseBit);
  } else if (caption.starts_with('\xC3') && caption.size() > 1 && lower(caption[1], '\xA0', '\xBE') &&
             caption[1] != '\xB7') {
    caption[1] = static_cast<char>(caption[1] - kCaseBit);  // à to þ but not the sign of division
  }
  return caption;
}

}  // namespace plovix
