/// @file
/// The values that host and pages exchange: a closed variant. Objects are counted references to anything that
/// derives from HostObject.
#pragma once

#include <plovix/base/failure.h>
#include <plovix/controls/kinds.h>

#include <cstdint>
#include <string>
#include <variant>

#include "ref.h"

namespace plovix {

/// Base of every host object that a Value can hold.
class HostObject {
 public:
  virtual ~HostObject() = default;
};

/// To any of them; may be nothing.
using ObjectRef = Ref<HostObject>;
/// A value of any of these types; monostate is a missing value. Texts are UTF-8.
using Value = std::variant<std::monostate, bool, std::int32_t, double, std::string, DateTime, ObjectRef>;

/// The object in `value` as a T; null for a missing value or an empty reference. Fails with 13 if the value
/// is not an object, or an object of another class.
template <class T>
[[nodiscard]] Ref<T> ObjectFrom(const Value& value) {
  if (std::holds_alternative<std::monostate>(value)) return nullptr;
  const auto* reference = std::get_if<ObjectRef>(&value);
  if (reference != nullptr && !*reference) return nullptr;
  const auto object = reference != nullptr ? As<T>(*reference) : nullptr;
  if (!object) throw Failure(failure_number::kTypeMismatch, "Type mismatch");
  return object;
}

/// The Boolean value of a Boolean or a number; only zero is false. Fails with 13 on anything else.
[[nodiscard]] inline bool BooleanFrom(const Value& value) {
  if (const auto* boolean = std::get_if<bool>(&value)) return *boolean;
  if (const auto* integer = std::get_if<std::int32_t>(&value)) return *integer != 0;
  if (const auto* number = std::get_if<double>(&value)) return *number != 0;
  throw Failure(failure_number::kTypeMismatch, "Type mismatch");
}

}  // namespace plovix
