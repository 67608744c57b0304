// A catalogue of data objects that is given as values. Used by scripts and tests.
#pragma once

#include <utility>

#include "data_source.h"
#include "same_name.h"

namespace plovix {

class MemoryDataSource final : public DataSource {
 public:
  struct Entry {
    DataObjectRecord object;
    std::vector<FieldRecord> fields;
  };
  MemoryDataSource() = default;
  // Offered in this order.
  explicit MemoryDataSource(std::vector<Entry> entries) : entries_(std::move(entries)) {}

  [[nodiscard]] std::vector<DataObjectRecord> List() override {
    std::vector<DataObjectRecord> objects;
    objects.reserve(entries_.size());
    for (const Entry& entry : entries_) objects.push_back(entry.object);
    return objects;
  }
  [[nodiscard]] std::optional<DataObjectRecord> Find(std::string_view name) override {
    const Entry* entry = EntryOf(name);
    return entry == nullptr ? std::nullopt : std::optional(entry->object);
  }
  [[nodiscard]] std::vector<FieldRecord> Fields(std::string_view name) override {
    const Entry* entry = EntryOf(name);
    return entry == nullptr ? std::vector<FieldRecord>() : entry->fields;
  }

 private:
  [[nodiscard]] const Entry* EntryOf(std::string_view name) const {
    for (const Entry& entry : entries_) {
      if (SameName(entry.object.name, name)) return &entry;
    }
    return nullptr;
  }

  std::vector<Entry> entries_;
};

}  // namespace plovix
