/// @file
/// The counted reference through which hosts and pages reach each other's objects.
#pragma once

#include <plovix/base/failure.h>

#include <concepts>
#include <cstddef>
#include <memory>
#include <utility>

namespace plovix {

/// A counted reference to an object of class T, or nothing. A use of nothing is failure 91, never a crash;
/// who asks first whether there is an object does so because nothing is an answer there. It is made of any
/// shared_ptr, so that a host keeps its objects as it likes.
template <class T>
class Ref {
 public:
  // NOLINTBEGIN(google-explicit-constructor): as implicit as those of a pointer
  /// @{
  /// Nothing.
  Ref() noexcept = default;
  Ref(std::nullptr_t /*nothing*/) noexcept {}
  /// @}
  /// @{
  /// To the same object, whose class is T or derives from it.
  template <std::derived_from<T> U>
  Ref(std::shared_ptr<U> object) noexcept : object_(std::move(object)) {}
  template <std::derived_from<T> U>
  Ref(Ref<U> other) noexcept : object_(std::move(other.object_)) {}
  /// @}
  // NOLINTEND(google-explicit-constructor)

  /// @{
  /// The object; both fail with 91 when there is none.
  [[nodiscard]] T& operator*() const {
    if (!object_) throw Failure(failure_number::kObjectNotSet, "Object variable not set");
    return *object_;
  }
  [[nodiscard]] T* operator->() const { return &**this; }
  /// @}
  /// The reference itself, for an argument that must not be nothing; fails with 91 when it is.
  [[nodiscard]] const Ref& OrFail() const {
    (void)**this;
    return *this;
  }

  /// Whether there is an object.
  [[nodiscard]] explicit operator bool() const noexcept { return object_ != nullptr; }
  /// Whether both are the same object, or both nothing.
  [[nodiscard]] friend bool operator==(const Ref& left, const Ref& right) noexcept = default;
  /// The object, or null.
  [[nodiscard]] T* Get() const noexcept { return object_.get(); }
  /// For what wants a standard pointer, a weak one for instance; may be empty.
  [[nodiscard]] const std::shared_ptr<T>& Shared() const noexcept { return object_; }

 private:
  template <class U>
  friend class Ref;
  std::shared_ptr<T> object_;
};

/// The object as a T; nothing when there is none, or one of another class.
template <class T, class U>
[[nodiscard]] Ref<T> As(const Ref<U>& object) {
  return std::dynamic_pointer_cast<T>(object.Shared());
}

}  // namespace plovix
