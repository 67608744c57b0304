/// @file
/// Data objects in memory, for scripts and tests.
#pragma once

#include <plovix/base/same_name.h>

#include <algorithm>

#include "data_source.h"

namespace plovix {

/// Offers what its owner puts into it.
class MemoryDataSource final : public DataSource {
 public:
  /// A data object with its fields.
  struct Entry {
    DataObjectRecord record;          ///< the data object
    std::vector<FieldRecord> fields;  ///< in the order of their declaration
  };

  [[nodiscard]] std::vector<DataObjectRecord> List() override {
    std::vector<DataObjectRecord> records;
    records.reserve(entries.size());
    for (const Entry& entry : entries) records.push_back(entry.record);
    return records;
  }
  [[nodiscard]] std::optional<DataObjectRecord> Find(std::string_view name) override {
    const Entry* found = Lookup(name);
    return found != nullptr ? std::optional(found->record) : std::nullopt;
  }
  [[nodiscard]] std::vector<FieldRecord> Fields(std::string_view name) override {
    const Entry* found = Lookup(name);
    return found != nullptr ? found->fields : std::vector<FieldRecord>();
  }

  std::vector<Entry> entries;  ///< in the order in which they are offered

 private:
  [[nodiscard]] const Entry* Lookup(std::string_view name) const {
    const auto found = std::ranges::find_if(
        entries, [name](const Entry& entry) { return SameName(entry.record.name, name); });
    return found == entries.end() ? nullptr : &*found;
  }
};

}  // namespace plovix
