// The WHERE clause as a tree: conditions joined by AND and OR. Used by the query's reader.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

#include "query_model.h"

namespace plovix {

struct WhereNode {
  Join join = Join::kAll;
  bool bracketed = false;
  std::vector<WhereNode> parts;  // none: the node is its condition
  Condition condition;
  [[nodiscard]] bool IsCondition() const { return parts.empty(); }
};

// A join of one part is that part.
[[nodiscard]] inline WhereNode Simplified(WhereNode node) {
  if (node.parts.size() != 1) return node;
  WhereNode only = std::move(node.parts.front());
  return only;
}

// Adds a condition, or a join of only conditions, as a group; false for anything deeper.
[[nodiscard]] inline bool AddGroup(WhereNode node, QueryModel& model) {
  Group group{node.join, {}};
  if (node.IsCondition()) node = WhereNode{Join::kAll, false, {std::move(node)}, {}};
  for (WhereNode& part : node.parts) {
    if (!part.IsCondition()) return false;
    group.conditions.push_back(std::move(part.condition));
  }
  model.groups.push_back(std::move(group));
  return true;
}

// Puts the tree's groups into the model; false if it is deeper than groups of conditions. Brackets around the
// whole are a group if they contain only conditions.
[[nodiscard]] inline bool Flatten(WhereNode tree, QueryModel& model) {
  const bool flat = std::ranges::all_of(tree.parts, &WhereNode::IsCondition);
  if (tree.IsCondition() || (tree.bracketed && flat)) return AddGroup(std::move(tree), model);
  model.outer = tree.join;
  return std::ranges::all_of(tree.parts,
                             [&model](WhereNode& part) { return AddGroup(std::move(part), model); });
}

}  // namespace plovix
