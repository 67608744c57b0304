#include "stand_in_data_source.h"

#include <plovix/base/failure.h>

namespace plovix {

std::vector<DataObjectRecord> StandInDataSource::List() {
  std::vector<DataObjectRecord> records;
  const auto failure = FailureOf([&] { records = source_->List(); });
  if (!failure) return records;
  tell_.unreadable(failure->Description());
  for (const auto& [name, record] : found_) records.push_back(record);
  return records;
}

// With a key, so that it is still offered to tasks on records.
std::optional<DataObjectRecord> StandInDataSource::Find(std::string_view name) {
  if (name.empty()) return std::nullopt;
  std::optional<DataObjectRecord> record;
  const auto failure = FailureOf([&] { record = source_->Find(name); });
  const std::string wanted(name);
  if (record) {
    found_.insert_or_assign(wanted, *record);
    return record;
  }
  if (failure) {
    tell_.unreadable(failure->Description());
  } else {
    found_.erase(wanted);
    tell_.missing(wanted);
  }
  return found_.try_emplace(wanted, DataObjectRecord{wanted, wanted, "rowid"}).first->second;
}

std::vector<FieldRecord> StandInDataSource::Fields(std::string_view name) {
  std::vector<FieldRecord> fields;
  const auto failure = FailureOf([&] { fields = source_->Fields(name); });
  if (failure) tell_.unreadable(failure->Description());
  return fields;
}

}  // namespace plovix
