#include "sqlite_data_source.h"

#include <plovix/standalone/model/fold_case.h>
#include <plovix/standalone/model/same_name.h>
#include <plovix/standalone/query/query_text.h>

#include <algorithm>
#include <array>
#include <set>
#include <tuple>
#include <utility>

#include "primary_key.h"
#include "time_limit.h"

namespace plovix {
namespace {

// Computed fields are looked at for so long.
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

// Behind the name of a virtual table and "_".
constexpr auto kShadowEndings = std::to_array<std::string_view>(
    {"content", "segments", "segdir", "docsize", "stat", "data", "idx", "config", "node", "parent", "rowid"});

// One pass. The database's own list of tables and their columns name keys and shadow tables, too, but take
// time in the square of the number of tables.
constexpr std::string_view kCatalogue =
    "SELECT name, type, rootpage, sql FROM sqlite_master "
    "WHERE type IN ('table', 'view') AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'";

struct CatalogueEntry {
  DataObjectRecord object;
  bool is_view = false;
  bool is_virtual = false;
};

struct Column {
  std::string name, declared;
};

std::vector<CatalogueEntry> ReadCatalogue(const Connection& connection) {
  std::vector<CatalogueEntry> entries;
  connection.Prepare(kCatalogue).ForEachRow([&entries](const Statement& row) {
    CatalogueEntry entry;
    entry.object.name = row.Text(0);
    entry.object.caption = CaptionOf(entry.object.name);
    entry.is_view = row.Text(1) == "view";
    entry.is_virtual = !entry.is_view && row.Integer(2) == 0;  // it has no page of its own
    if (!entry.is_view && !entry.is_virtual) entry.object.key = SinglePrimaryKey(row.Text(3));
    entries.push_back(std::move(entry));
  });
  return entries;
}

std::string Lower(std::string_view name) {
  std::string lower(name);
  std::ranges::transform(name, lower.begin(), LowerAscii);
  return lower;
}

void RemoveShadowTables(std::vector<CatalogueEntry>& entries) {
  std::set<std::string> shadows;
  for (const CatalogueEntry& entry : entries) {
    if (!entry.is_virtual) continue;
    for (const std::string_view ending : kShadowEndings) {
      shadows.insert(Lower(entry.object.name) + "_" + std::string(ending));
    }
  }
  if (shadows.empty()) return;
  std::erase_if(entries, [&shadows](const CatalogueEntry& entry) {
    return !entry.is_view && !entry.is_virtual && shadows.contains(Lower(entry.object.name));
  });
}

std::vector<Column> ColumnsOf(const Connection& connection, std::string_view name) {
  constexpr std::int64_t kHidden = 1;
  std::vector<Column> columns;
  Statement statement = connection.Prepare("SELECT name, type, hidden FROM pragma_table_xinfo(?)");
  statement.BindText(0, name);
  statement.ForEachRow([&columns](const Statement& row) {
    if (row.Integer(2) != kHidden) columns.push_back({std::string(row.Text(0)), std::string(row.Text(1))});
  });
  return columns;
}

// A view that cannot be read has none; whoever reads it learns why.
std::string KeyOfView(const Connection& connection, std::string_view name) {
  try {
    for (const Column& column : ColumnsOf(connection, name)) {
      if (SameName(column.name, "id")) return column.name;
    }
  } catch (const SqlFailure&) {
    return {};
  }
  return {};
}

std::vector<DataObjectRecord> ReadObjects(const Connection& connection) {
  std::vector<CatalogueEntry> entries = ReadCatalogue(connection);
  RemoveShadowTables(entries);
  std::vector<std::pair<std::string, DataObjectRecord>> sorted;  // by caption, whatever its case
  sorted.reserve(entries.size());
  for (CatalogueEntry& entry : entries) {
    if (entry.is_view) entry.object.key = KeyOfView(connection, entry.object.name);
    sorted.emplace_back(FoldCase(entry.object.caption), std::move(entry.object));
  }
  std::ranges::sort(sorted, {}, [](const auto& item) {
    return std::tuple<std::string_view, std::string_view>(item.first, item.second.name);
  });
  std::vector<DataObjectRecord> objects;
  objects.reserve(sorted.size());
  for (auto& [key, object] : sorted) objects.push_back(std::move(object));
  return objects;
}

FieldType TypeOfValues(std::string_view storage_class) {
  if (storage_class == "integer" || storage_class == "real") return FieldType::kReal;
  return storage_class == "blob" ? FieldType::kBinary : FieldType::kText;
}

// The values of a field without a declaration are compared as they are stored: a number that is compared with
// a text would never be equal to it.
void LookAtUndeclared(const Connection& connection, std::string_view object,
                      const std::vector<Column>& columns, std::vector<FieldRecord>& fields) {
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
    return;  // a view of what is no longer there
  } catch (const Failure&) {
    if (!limit.IsOver()) throw;
  }
}

}  // namespace

void SqliteDataSource::Reading(const std::function<void(const Connection&)>& body) {
  if (connection_ && FileAt(path_) != file_) connection_.reset();
  if (!connection_) {
    connection_ = std::make_unique<Connection>(path_, patience_, Access::kReadOnly);
    file_ = FileAt(path_);
  }
  try {
    body(*connection_);
  } catch (...) {
    connection_.reset();
    throw;
  }
}

// Another program may change the file while it is read: the state before that is the one that was read.
const std::vector<DataObjectRecord>& SqliteDataSource::Listed() {
  const FileState state = StateOf(path_);
  if (!listed_ || state.in_use || *listed_ != state) {
    listed_.reset();
    Reading([this](const Connection& connection) { objects_ = ReadObjects(connection); });
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
  Reading([&fields, name](const Connection& connection) {
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
