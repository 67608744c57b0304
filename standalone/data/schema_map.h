// What a user's file contains, judged by its texts before the database processes them: which names are
// hidden, and which views are built on so many others that preparing a statement on them would take minutes
// or all memory, in calls that nothing can stop. Used by the catalogue and to run queries.
#pragma once

#include <plovix/standalone/query/sql_sources.h>
#include <plovix/standalone/sqlite/connection.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace plovix {

// More SELECTs than this in one statement, after its views are expanded, are refused; so are views that are
// nested more than kMostStoreys deep.
inline constexpr std::size_t kMostSelects = 500;
inline constexpr int kMostStoreys = 32;

struct SchemaEntry {
  enum class Kind { kTable, kView, kVirtual };
  std::string name;
  Kind kind = Kind::kTable;
  std::string module;  // of a virtual table, in lower case
  // A view or virtual table on something with a hidden name, or an internal table of such a virtual table.
  bool reads_hidden = false;
};

class SchemaMap final {
 public:
  // Reads the connection's file. `each` also gets every table's statement, which is not kept.
  using Each = std::function<void(const SchemaEntry& entry, std::string_view sql)>;
  explicit SchemaMap(const Connection& connection, const Each& each = {});

  // Without the database's own tables; unordered.
  [[nodiscard]] const std::vector<SchemaEntry>& Entries() const noexcept { return entries_; }
  // nullptr if there is none.
  [[nodiscard]] const SchemaEntry* Find(std::string_view name) const;
  // The number of SELECTs in the text after every view and common table expression is expanded; more than
  // kMostSelects means too many to be counted.
  [[nodiscard]] std::size_t SelectsIn(std::string_view sql);
  // The virtual table whose content is in this table; nullptr for every other table and view.
  [[nodiscard]] const SchemaEntry* OwnerOfShadow(std::string_view name) const;
  // What queries may read, and what virtual tables read for them. The map outlives it.
  [[nodiscard]] bool MayRead(std::string_view table, std::string_view column, bool reads_hidden) const;

 private:
  // A view, a virtual table, a common table expression, or a query.
  struct Node {
    std::vector<std::size_t> reads;  // other nodes
    std::size_t selects = 1;
    int storeys = 1;
    bool reads_hidden = false;
    bool is_known = false;
  };
  using Names = std::unordered_map<std::string, std::size_t>;
  using Words = std::unordered_set<std::string>;
  struct Virtual {
    std::size_t entry = 0;
    Words words;  // of its arguments, including those in quotes
  };
  void Read(const Connection& connection, const Each& each, std::vector<std::string>& view_texts);
  void AddVirtualNodes();
  void SpreadHidden();
  [[nodiscard]] Words HiddenWords() const;
  void Link(std::size_t node, const SqlSources& sources);
  void LinkOne(std::size_t text, std::size_t node, const std::vector<std::string>& sources,
               const Names& common);
  void Weigh(std::size_t first);
  [[nodiscard]] bool Weigh(Node& node) const;

  std::vector<SchemaEntry> entries_;
  Names by_name_;
  Names views_;     // their nodes
  Names virtuals_;  // likewise, also of their internal tables
  std::vector<Virtual> virtual_list_;
  std::vector<Node> nodes_;
  std::unordered_set<std::string> modules_;
};

}  // namespace plovix
