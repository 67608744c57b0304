#include "stand_in_data_source.h"

#include <plovix/base/failure.h>

namespace plovix {
namespace {

// The failure's text if `read` fails; reported only afterwards, when no exception is alive.
template <class Read>
std::optional<std::string> ProblemOf(const Read& read) {
  try {
    read();
    return std::nullopt;
  } catch (const Failure& failure) {
    return failure.Description();
  }
}

}  // namespace

std::vector<DataObjectRecord> StandInDataSource::List() {
  std::vector<DataObjectRecord> records;
  const auto problem = ProblemOf([&] { records = source_->List(); });
  if (!problem) return records;
  tell_.unreadable(*problem);
  for (const auto& [name, record] : found_) records.push_back(record);
  return records;
}

// With a key, so that it is still offered to tasks on records.
std::optional<DataObjectRecord> StandInDataSource::Find(std::string_view name) {
  if (name.empty()) return std::nullopt;
  std::optional<DataObjectRecord> record;
  const auto problem = ProblemOf([&] { record = source_->Find(name); });
  const std::string wanted(name);
  if (record) {
    found_.insert_or_assign(wanted, *record);
    return record;
  }
  if (problem) {
    tell_.unreadable(*problem);
  } else {
    found_.erase(wanted);
    tell_.missing(wanted);
  }
  return found_.try_emplace(wanted, DataObjectRecord{wanted, wanted, "rowid"}).first->second;
}

std::vector<FieldRecord> StandInDataSource::Fields(std::string_view name) {
  std::vector<FieldRecord> fields;
  const auto problem = ProblemOf([&] { fields = source_->Fields(name); });
  if (problem) tell_.unreadable(*problem);
  return fields;
}

}  // namespace plovix
