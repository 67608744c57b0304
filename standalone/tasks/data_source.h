/// @file
/// The data that tasks work on, as the stand-alone host sees them: data objects (tables and views) and their
/// fields. Implemented for a database file, and in memory for scripts and tests.
#pragma once

#include <plovix/base/requirements.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

/// The type of a field's values; decides which comparisons make sense and how a typed value is read.
enum class FieldType {
  kText,      ///< any text
  kInteger,   ///< a whole number
  kReal,      ///< a number
  kBoolean,   ///< true or false
  kDate,      ///< a day
  kDateTime,  ///< a moment
  kBinary     ///< bytes; can only be tested for presence
};

/// One field of a data object.
struct FieldRecord {
  std::string name;                   ///< unique in its data object, ignoring case
  FieldType type = FieldType::kText;  ///< of its values
  bool operator==(const FieldRecord&) const = default;
};

/// A table or view.
struct DataObjectRecord {
  std::string name;           ///< unique, ignoring case
  std::string caption;        ///< as shown
  std::string key;            ///< the field that identifies a record; empty if there is none
  bool reads_hidden = false;  ///< a view of one with a hidden name, and therefore hidden, too
  bool operator==(const DataObjectRecord&) const = default;
};

/// Names that begin with an underscore are for administrators only.
[[nodiscard]] constexpr bool HasHiddenName(std::string_view name) {
  return name.starts_with('_');
}

/// Every member fails with a Failure that names the source and says what a person can do about it.
class DataSource {
 public:
  virtual ~DataSource() = default;
  /// All data objects, in the order in which they are offered.
  [[nodiscard]] virtual std::vector<DataObjectRecord> List() = 0;
  /// Nothing if there is none of that name.
  [[nodiscard]] virtual std::optional<DataObjectRecord> Find(std::string_view name) = 0;
  /// In the order of the data object's declaration; empty for an unknown name.
  [[nodiscard]] virtual std::vector<FieldRecord> Fields(std::string_view name) = 0;
};

}  // namespace plovix
