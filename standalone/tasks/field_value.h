/// @file
/// The value of a field of a record, with its type as the database knows it; and a record as its values by
/// the names of the fields. Used where actions run.
#pragma once

#include <plovix/base/requirements.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace plovix {

/// Bytes that are no text.
struct Blob {
  std::string bytes;  ///< any
  bool operator==(const Blob&) const = default;
};

/// NULL, a whole number, a number, a text (UTF-8 unless the database holds other bytes), or bytes.
using FieldValue = std::variant<std::monostate, std::int64_t, double, std::string, Blob>;

/// A field of a record.
struct NamedValue {
  std::string name;  ///< unique in its record, ignoring the case of A to Z
  FieldValue value;  ///< of the field
  bool operator==(const NamedValue&) const = default;
};
/// A record; empty where a task works without one.
using RecordValues = std::vector<NamedValue>;

/// The field's value, ignoring the case of A to Z; nullptr if the record has no such field.
[[nodiscard]] const FieldValue* FindValue(const RecordValues& record, std::string_view name);

/// What a person or a program reads: NULL is the empty text, a number has the fewest digits that tell it from
/// every other (a whole one of type real ends in ".0"), bytes are lower-case hexadecimal digits.
[[nodiscard]] std::string TextOf(const FieldValue& value);

/// The value as the key of a record: TextOf behind the type, "i:42", "r:42.0", "t:42", "b:3432"; "n:" for
/// NULL. Values that differ in type or content have different keys.
[[nodiscard]] std::string KeyOf(const FieldValue& value);

}  // namespace plovix
