// Counts the objects through which the component's code is still reachable, so that a host that has loaded it
// at run time knows when it may unload it.
#pragma once

#include <atomic>
#include <memory>

namespace plovix {

// A token: as long as one exists, the component's code is needed. Held by every page and factory, and by
// every function object that a page leaves with the host.
class InUse {
 public:
  InUse() noexcept { ++count_; }
  InUse(const InUse& /*other*/) noexcept { ++count_; }
  InUse& operator=(const InUse&) noexcept = default;
  ~InUse() { --count_; }

  [[nodiscard]] static int Count() noexcept { return count_; }

 private:
  static std::atomic<int> count_;
};

// For std::allocate_shared: the token lives until the last reference, including weak ones, is gone, because
// dropping it still runs the component's code.
template <class T>
struct InUseAllocator : std::allocator<T> {
  InUseAllocator() = default;
  template <class U>
  explicit InUseAllocator(const InUseAllocator<U>& other) noexcept : in_use(other.in_use) {}
  template <class U>
  struct rebind {  // NOLINT(readability-identifier-naming): the standard's name
    using other = InUseAllocator<U>;
  };

  InUse in_use;
};

template <class T, class... Arguments>
[[nodiscard]] std::shared_ptr<T> MakeInUse(Arguments&&... arguments) {
  return std::allocate_shared<T>(InUseAllocator<T>(), std::forward<Arguments>(arguments)...);
}

}  // namespace plovix
