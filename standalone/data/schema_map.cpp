#include "schema_map.h"

#include <plovix/standalone/query/sql_tokens.h>
#include <plovix/standalone/tasks/data_source.h>

#include <algorithm>
#include <array>
#include <span>

namespace plovix {
namespace {

// A single pass. The database's own lists of tables and columns include keys and shadow tables, too, but take
// time proportional to the square of the number of tables.
constexpr std::string_view kEveryObject =
    "SELECT name, type, rootpage, sql FROM sqlite_master "
    "WHERE type IN ('table', 'view') AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\'";

// Virtual tables that the database itself trusts in a file from anywhere, and that can be read without being
// prepared for writing.
constexpr auto kSafeModules = std::to_array<std::string_view>({"fts3", "fts4", "fts5"});
// Functions that return rows.
constexpr auto kSafeFunctions = std::to_array<std::string_view>({"json_each", "json_tree"});

bool IsAmong(std::span<const std::string_view> list, std::string_view name) {
  return std::ranges::find(list, name) != list.end();
}

// The names of tables in which virtual tables keep their content: their own name, "_", and one of these.
constexpr auto kShadowEndings = std::to_array<std::string_view>(
    {"content", "segments", "segdir", "docsize", "stat", "data", "idx", "config", "node", "parent", "rowid"});

// Every module reads its arguments in its own way. Whatever name is in them, its words are.
std::vector<std::string> WordsIn(std::string_view text) {
  const auto is_in_word = [](char character) {
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9') ||
           character == '_' || character == '$' || static_cast<unsigned char>(character) >= 0x80U;
  };
  const std::string lower = LowerName(text);
  std::vector<std::string> words;
  for (auto at = lower.begin(); at != lower.end();) {
    const auto end = std::find_if_not(at, lower.end(), is_in_word);
    if (end != at) words.emplace_back(at, end);
    at = std::find_if(end, lower.end(), is_in_word);
  }
  return words;
}

// A word that is in every text that contains the name; empty if there is none.
std::string LongestWord(std::string_view name) {
  const std::vector<std::string> words = WordsIn(name);
  const auto longest = std::ranges::max_element(words, {}, &std::string::size);
  return longest == words.end() ? std::string() : *longest;
}

// "CREATE VIRTUAL TABLE name USING module(...)".
void ReadVirtual(std::string_view sql, SchemaEntry& entry) {
  const std::vector<SqlToken> tokens = SqlTokens(sql);
  const auto is_using = [](const SqlToken& token) { return token.Is("USING"); };
  const auto word = std::ranges::find_if(tokens, is_using);
  if (word == tokens.end()) return;
  entry.module = LowerName((word + 1)->text);
  entry.reads_hidden =
      std::any_of(word, tokens.end(), [](const SqlToken& token) { return HasHiddenName(token.text); });
}

}  // namespace

SchemaMap::SchemaMap(const Connection& connection, const Each& each) {
  std::vector<std::string> view_texts;
  Read(connection, each, view_texts);
  nodes_.resize(views_.size());
  AddVirtualNodes();
  for (std::size_t view = 0; view < view_texts.size(); ++view) Link(view, SourcesOf(view_texts[view]));
  Weigh(0);
  SpreadHidden();
  for (const Names* names : {&views_, &virtuals_}) {
    for (const auto& [name, node] : *names) {
      const auto entry = by_name_.find(name);
      if (entry != by_name_.end()) entries_[entry->second].reads_hidden = nodes_[node].reads_hidden;
    }
  }
  connection.Prepare("SELECT name FROM pragma_module_list").ForEachRow([this](const Statement& row) {
    modules_.insert(LowerName(row.Text(0)));
  });
}

void SchemaMap::Read(const Connection& connection, const Each& each, std::vector<std::string>& view_texts) {
  connection.Prepare(kEveryObject).ForEachRow([&](const Statement& row) {
    SchemaEntry entry;
    entry.name = row.Text(0);
    if (row.Text(1) == "view") {
      entry.kind = SchemaEntry::Kind::kView;
    } else if (row.Integer(2) == 0) {  // without a page: a virtual table
      entry.kind = SchemaEntry::Kind::kVirtual;
      ReadVirtual(row.Text(3), entry);
    }
    std::string name = LowerName(entry.name);
    if (entry.kind == SchemaEntry::Kind::kView && views_.try_emplace(name, view_texts.size()).second)
      view_texts.emplace_back(row.Text(3));
    if (entry.kind == SchemaEntry::Kind::kVirtual) {
      const std::string_view sql = row.Text(3);
      const std::vector<std::string> words = WordsIn(sql.substr(std::min(sql.find('('), sql.size())));
      virtual_list_.push_back({entries_.size(), Words(words.begin(), words.end())});
    }
    if (each) each(entry, row.Text(3));
    by_name_.try_emplace(std::move(name), entries_.size());
    entries_.push_back(std::move(entry));
  });
}

// A virtual table is not a SELECT and reads none while a statement is prepared.
void SchemaMap::AddVirtualNodes() {
  for (const Virtual& table : virtual_list_) {
    const SchemaEntry& entry = entries_[table.entry];
    const std::string name = LowerName(entry.name);
    virtuals_.insert_or_assign(name, nodes_.size());
    for (const std::string_view ending : kShadowEndings) {
      const std::string shadow = name + "_" + std::string(ending);
      const SchemaEntry* kept = Find(shadow);
      if (kept != nullptr && kept->kind == SchemaEntry::Kind::kTable)
        virtuals_.emplace(shadow, nodes_.size());
    }
    nodes_.push_back({.reads = {},
                      .selects = 0,
                      .storeys = 0,
                      .reads_hidden = entry.reads_hidden || HasHiddenName(entry.name),
                      .is_known = true});
  }
}

// Nobody may read these words in the arguments of a virtual table that others may read.
SchemaMap::Words SchemaMap::HiddenWords() const {
  Words words;
  for (const SchemaEntry& entry : entries_) {
    if (HasHiddenName(entry.name)) words.insert(LongestWord(entry.name));
  }
  for (const Names* names : {&views_, &virtuals_}) {
    for (const auto& [name, node] : *names) {
      if (nodes_[node].reads_hidden) words.insert(LongestWord(name));
    }
  }
  return words;
}

// Spreads from hidden objects to the virtual tables that name them, to the views on these, and so on. What
// these passes do not reach is nested too deeply and counts as hidden.
void SchemaMap::SpreadHidden() {
  for (int pass = 0; !virtual_list_.empty(); ++pass) {
    bool found = false;
    const Words hidden = HiddenWords();
    for (const Virtual& table : virtual_list_) {
      Node& node = nodes_[virtuals_.at(LowerName(entries_[table.entry].name))];
      const bool names_hidden =
          pass >= kMostStoreys || hidden.contains(std::string()) ||
          std::ranges::any_of(table.words, [&](const std::string& word) { return hidden.contains(word); });
      found = found || (names_hidden && !node.reads_hidden);
      node.reads_hidden = node.reads_hidden || names_hidden;
    }
    for (Node& node : nodes_) {
      const auto is_hidden = [this](std::size_t read) { return nodes_[read].reads_hidden; };
      if (node.reads_hidden || !std::ranges::any_of(node.reads, is_hidden)) continue;
      found = node.reads_hidden = true;
    }
    if (!found) return;
  }
}

const SchemaEntry* SchemaMap::OwnerOfShadow(std::string_view name) const {
  const auto found = virtuals_.find(LowerName(name));
  if (found == virtuals_.end()) return nullptr;
  const SchemaEntry& owner = entries_[virtual_list_[found->second - views_.size()].entry];
  return LowerName(owner.name) == found->first ? nullptr : &owner;
}

const SchemaEntry* SchemaMap::Find(std::string_view name) const {
  const auto found = by_name_.find(LowerName(name));
  return found == by_name_.end() ? nullptr : &entries_[found->second];
}

std::size_t SchemaMap::SelectsIn(std::string_view sql) {
  const std::size_t node = nodes_.size();
  nodes_.emplace_back();
  Link(node, SourcesOf(sql));
  Weigh(node);
  const std::size_t selects = nodes_[node].selects;
  nodes_.resize(node);
  return selects;
}

// Common table expressions with the same name become one. They are visible in the whole text, and so is a
// view with their name, because it is unknown where in the text they end.
void SchemaMap::Link(std::size_t node, const SqlSources& sources) {
  Names common;
  for (const CommonTable& table : sources.common) {
    if (common.try_emplace(table.name, nodes_.size()).second) nodes_.emplace_back();
  }
  LinkOne(node, node, sources.all, common);
  for (const CommonTable& table : sources.common) LinkOne(node, common.at(table.name), table.sources, common);
  if (sources.too_deep) nodes_[node].reads.push_back(node);  // depends on itself and is never known
}

void SchemaMap::LinkOne(std::size_t text, std::size_t node, const std::vector<std::string>& sources,
                        const Names& common) {
  for (const std::string& name : sources) {
    const auto local = common.find(name);
    const bool is_common = local != common.end();
    if (is_common && local->second != node) nodes_[node].reads.push_back(local->second);  // else: recursive
    const auto view = views_.find(name);
    // The database refuses a view of itself.
    if (view != views_.end() && (!is_common || view->second != text))
      nodes_[node].reads.push_back(view->second);
    const auto table = virtuals_.find(name);
    if (table != virtuals_.end()) nodes_[node].reads.push_back(table->second);
    nodes_[node].reads_hidden = nodes_[node].reads_hidden || HasHiddenName(name);
  }
}

// Each pass computes at least one more level. What is then still unknown is circular, or nested too deeply.
void SchemaMap::Weigh(std::size_t first) {
  for (int pass = 0; pass < kMostStoreys; ++pass) {
    bool found = false;
    for (std::size_t i = first; i < nodes_.size(); ++i)
      found = (!nodes_[i].is_known && Weigh(nodes_[i])) || found;
    if (!found) break;
  }
  for (std::size_t i = first; i < nodes_.size(); ++i) {
    if (!nodes_[i].is_known || nodes_[i].storeys > kMostStoreys) nodes_[i].selects = kMostSelects + 1;
    if (!nodes_[i].is_known) nodes_[i].reads_hidden = true;
  }
}

bool SchemaMap::Weigh(Node& node) const {
  const auto is_known = [this](std::size_t read) { return nodes_[read].is_known; };
  if (!std::ranges::all_of(node.reads, is_known)) return false;
  for (const std::size_t read : node.reads) {
    node.selects = std::min(node.selects + nodes_[read].selects, kMostSelects + 1);
    node.storeys = std::max(node.storeys, nodes_[read].storeys + 1);
    node.reads_hidden = node.reads_hidden || nodes_[read].reads_hidden;
  }
  return node.is_known = true;
}

// A name that is not in the file is a common table expression, or one of the database's own tables, which
// reveal its details and how other programs use it.
bool SchemaMap::MayRead(std::string_view table, std::string_view column, bool reads_hidden) const {
  const std::string name = LowerName(table);
  const auto found = by_name_.find(name);
  if (found != by_name_.end()) {
    const SchemaEntry& entry = entries_[found->second];
    if (entry.kind == SchemaEntry::Kind::kVirtual && !IsAmong(kSafeModules, entry.module)) return false;
    return reads_hidden || (!HasHiddenName(entry.name) && !entry.reads_hidden);
  }
  if (IsAmong(kSafeFunctions, name)) return true;
  return column.empty() && !modules_.contains(name) && !name.starts_with("pragma_") &&
         !name.starts_with("sqlite_");
}

}  // namespace plovix
