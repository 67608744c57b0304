// What a user's file holds, by its own words and before the database makes anything of them: which names are
// hidden, and which views are built on so many others that preparing a statement on them would take minutes
// or all the memory, in calls that nothing can end. Used by the catalogue and by running queries.
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

// More SELECTs than this in one statement, once its views stand in it, are refused; so are views that are
// built on each other in more than kMostStoreys.
inline constexpr std::size_t kMostSelects = 500;
inline constexpr int kMostStoreys = 32;

struct SchemaEntry {
  enum class Kind { kTable, kView, kVirtual };
  std::string name;
  Kind kind = Kind::kTable;
  std::string module;  // of a virtual table, in small letters
  // A view or virtual table on something with a hidden name, or a table that such a virtual table keeps.
  bool reads_hidden = false;
};

class SchemaMap final {
 public:
  // Reads the connection's file. `each` is given every table's statement, too, which is not kept.
  using Each = std::function<void(const SchemaEntry& entry, std::string_view sql)>;
  explicit SchemaMap(const Connection& connection, const Each& each = {});

  // Without the database's own tables; in no order.
  [[nodiscard]] const std::vector<SchemaEntry>& Entries() const noexcept { return entries_; }
  // nullptr when there is none.
  [[nodiscard]] const SchemaEntry* Find(std::string_view name) const;
  // How many SELECTs the text comes to once every view and common table expression stands where it is named;
  // more than kMostSelects: too many to be counted.
  [[nodiscard]] std::size_t SelectsIn(std::string_view sql);
  // The virtual table that keeps its content in this table; nullptr for every other table and view.
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
    Words words;  // of its arguments, those in quotes, too
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
  Names virtuals_;  // likewise, also of the tables that they keep
  std::vector<Virtual> virtual_list_;
  std::vector<Node> nodes_;
  std::unordered_set<std::string> modules_;
};

}  // namespace plovix
