// Data objects held in memory, for scripts and tests.
#pragma once

#include <algorithm>

#include "data_source.h"
#include "same_name.h"

namespace plovix {

class MemoryDataSource final : public DataSource {
 public:
  struct Entry {
    DataObjectRecord record;
    std::vector<FieldRecord> fields;
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

  std::vector<Entry> entries;

 private:
  [[nodiscard]] const Entry* Lookup(std::string_view name) const {
    const auto found = std::ranges::find_if(
        entries, [name](const Entry& entry) { return SameName(entry.record.name, name); });
    return found == entries.end() ? nullptr : &*found;
  }
};

}  // namespace plovix
