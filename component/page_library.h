/// @file
/// The page library loaded at run time, for hosts that do not link it. Such a host links only the controls
/// library, which contains the classes that both sides use.
#pragma once

#include <dlfcn.h>

#include <string>
#include <utility>

#include "entry_points.h"

namespace plovix {

/// Loads libplovix, checks its interface version and adds its pages to a registry. The destructor removes the
/// pages and unloads the library. If an object of it is still alive, it stays loaded for the rest of the
/// process, which is safe.
class PageLibrary {
 public:
  /// @param path      a file name that the dynamic linker finds, such as "libplovix.so.1", or a path
  /// @param registry  outlives this object
  /// Fails with 429 and a description: no such library, no library of this kind, another interface version,
  /// or an identifier that is taken.
  PageLibrary(const std::string& path, PageRegistry& registry) : registry_(registry) {
    handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) Fail(dlerror());
    try {
      const auto version = Function<decltype(&plovix_interface_version)>("plovix_interface_version")();
      if (version != kInterfaceVersion) {
        Fail(path + " has interface version " + std::to_string(version) + "; this program needs " +
             std::to_string(kInterfaceVersion));
      }
      unregister_ = Function<decltype(&plovix_unregister)>("plovix_unregister");
      can_unload_ = Function<decltype(&plovix_can_unload)>("plovix_can_unload");
      EntryError error{};
      const auto enter = Function<decltype(&plovix_register)>("plovix_register");
      if (enter(kInterfaceVersion, &registry_, &error) != EntryResult::kDone) Fail(error.text);
    } catch (...) {
      dlclose(handle_);
      throw;
    }
  }
  ~PageLibrary() {
    unregister_(kInterfaceVersion, &registry_, nullptr);
    if (can_unload_()) dlclose(handle_);
  }
  PageLibrary(const PageLibrary&) = delete;
  PageLibrary& operator=(const PageLibrary&) = delete;

  /// An entry point by its name. Fails with 429 if the library lacks it.
  template <class Pointer>
  [[nodiscard]] Pointer Function(const char* name) const {
    void* const address = dlsym(handle_, name);
    if (address == nullptr) Fail(std::string("not a Plovix library: it has no ") + name);
    return reinterpret_cast<Pointer>(address);
  }

 private:
  [[noreturn]] static void Fail(const std::string& why) {
    throw Failure(failure_number::kCannotCreateObject, "The Plovix pages could not be loaded: " + why);
  }

  PageRegistry& registry_;
  void* handle_ = nullptr;
  decltype(&plovix_unregister) unregister_ = nullptr;
  decltype(&plovix_can_unload) can_unload_ = nullptr;
};

}  // namespace plovix
