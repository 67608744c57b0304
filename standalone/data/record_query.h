// The statements with which a task's records are found, and the field that tells when one changed. Used by
// the records of files and of scripts.
#pragma once

#include <plovix/standalone/tasks/data_source.h>

#include <optional>
#include <span>
#include <string>

namespace plovix {

// The keys of the records that `query`, one SELECT, finds, ascending; of all records where it is empty.
[[nodiscard]] std::string KeysStatement(const DataObjectRecord& object, const std::string& query);
// The same with all fields of each record behind its key.
[[nodiscard]] std::string RecordsStatement(const DataObjectRecord& object, const std::string& query);
// All fields of the record with the key "?".
[[nodiscard]] std::string RecordStatement(const DataObjectRecord& object);

// By type and name: "changed", "updated_at" and their like; nothing if there is none.
[[nodiscard]] std::optional<std::string> ChangeFieldOf(std::span<const FieldRecord> fields);

}  // namespace plovix
