/// @file
/// Merging of changes by two people who have read the same rows: what the second one stores is merged into
/// stored. Used by the users and tags and by the windows that edit them.
#pragma once

#include <plovix/base/failure.h>

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace plovix {

/// Thrown if somebody else has changed the same rows differently since they were read; nothing is stored
/// then.
class RowConflict final : public Failure {
 public:
  /// `description` tells a person what happened; `rows` are the keys of the rows.
  RowConflict(const std::string& description, std::vector<std::string> rows)
      : Failure(failure_number::kInvalidCall, description), rows_(std::move(rows)) {}
  /// The keys of these rows.
  [[nodiscard]] const std::vector<std::string>& Rows() const noexcept { return rows_; }

 private:
  std::vector<std::string> rows_;
};

/// The result of MergeRows.
template <class Row>
struct MergedRows {
  std::map<std::string, Row> rows;  ///< with one's own change if both changed a row
  std::set<std::string> conflicts;  ///< the keys of the rows that both changed differently
};

/// Applies the differences between `read` and `mine` to `stored`: added, removed and changed rows.
template <class Row>
[[nodiscard]] MergedRows<Row> MergeRows(const std::map<std::string, Row>& read,
                                        const std::map<std::string, Row>& mine,
                                        const std::map<std::string, Row>& stored) {
  const auto find = [](const std::map<std::string, Row>& rows, const std::string& key) {
    const auto found = rows.find(key);
    return found == rows.end() ? nullptr : &found->second;
  };
  const auto same = [](const Row* one, const Row* other) {
    return one == nullptr || other == nullptr ? one == other : *one == *other;
  };
  MergedRows<Row> merged{stored, {}};
  for (const auto* rows : {&read, &mine}) {
    for (const auto& [key, row] : *rows) {
      const Row *former = find(read, key), *wanted = find(mine, key), *present = find(stored, key);
      if (same(former, wanted)) continue;
      if (!same(present, former) && !same(present, wanted)) merged.conflicts.insert(key);
      merged.rows.erase(key);
      if (wanted != nullptr) merged.rows.emplace(key, *wanted);
    }
  }
  return merged;
}

}  // namespace plovix
