/// @file
/// What pages hand over to this host's objects: positions counted from 1, and objects.
#pragma once

#include <plovix/host/ref.h>

#include <cstddef>
#include <cstdint>

namespace plovix {

/// What a list's Count tells.
template <class List>
[[nodiscard]] std::int32_t CountOf(const List& list) {
  return static_cast<std::int32_t>(list.size());
}

/// The item at `index`, which is counted from 1; fails with 9 outside 1 .. the list's size.
template <class List>
[[nodiscard]] auto& ItemAt(List& list, std::int32_t index) {
  if (index < 1 || static_cast<std::size_t>(index) > list.size()) {
    throw Failure(failure_number::kSubscriptOutOfRange, "Subscript out of range");
  }
  return list[static_cast<std::size_t>(index) - 1];
}

/// The object as this host made it; fails with 13 on any other, and on nothing.
template <class Own, class Object>
[[nodiscard]] Ref<Own> OwnObject(const Ref<Object>& object) {
  auto own = As<Own>(object);
  if (!own) throw Failure(failure_number::kTypeMismatch, "Type mismatch");
  return own;
}

/// The same, with nothing for nothing.
template <class Own, class Object>
[[nodiscard]] Ref<Own> OwnOrNothing(const Ref<Object>& object) {
  return object ? OwnObject<Own>(object) : nullptr;
}

}  // namespace plovix
