/// @file
/// The library's entry points: plain functions that a host links or looks up at run time (page_library.h).
/// libplovix exports nothing else. No function lets a failure through; each reports it in its result and, if
/// the caller provides an EntryError, in words.
#pragma once

#include <cstdint>
#include <memory>

#include "page_registry.h"

namespace plovix {

/// Version of the binary interface: the functions below and the classes of controls/, host/ and
/// framework/wizard_page.h. Raised whenever one of them changes so that a host has to be compiled again; it
/// is also the suffix of the shared library's name.
inline constexpr std::uint32_t kInterfaceVersion = 1;

/// The result of an entry point. The numbers never change.
enum class EntryResult : std::int32_t {
  kDone = 0,
  kWrongVersion = 1,       ///< the caller was compiled for another interface version; nothing was touched
  kUnknownIdentifier = 2,  ///< no page has that identifier
  kAlreadyRegistered = 3,  ///< one of its identifiers is taken; the registry is unchanged
  kNotRegistered = 4,      ///< the registry holds no page of this library
  kInvalidArgument = 5,    ///< a required pointer is null
  kFailed = 6,             ///< anything else, such as exhausted memory; a registry is unchanged
};

/// The reason in English, for a log or a developer: UTF-8, zero-terminated; empty after kDone.
struct EntryError {
  char text[256];  ///< a longer reason is cut
};

}  // namespace plovix

/// Marks what the shared library exports.
#define PLOVIX_ENTRY_POINT extern "C" __attribute__((visibility("default")))

/// The interface version that the library was compiled with; compare it with kInterfaceVersion before
/// anything else. This is the only function whose signature never changes.
PLOVIX_ENTRY_POINT std::uint32_t plovix_interface_version() noexcept;

/// Enters all pages into `registry`, or none.
/// @param interface_version  kInterfaceVersion as the caller was compiled with
/// @param registry           the caller's; keeps the library in use until plovix_unregister()
/// @param error              receives the reason; may be null
PLOVIX_ENTRY_POINT plovix::EntryResult plovix_register(std::uint32_t interface_version,
                                                       plovix::PageRegistry* registry,
                                                       plovix::EntryError* error) noexcept;

/// Removes the pages of this library from `registry`. Existing page objects live on.
/// @param interface_version  kInterfaceVersion as the caller was compiled with
/// @param registry           the one that was given to plovix_register()
/// @param error              receives the reason; may be null
PLOVIX_ENTRY_POINT plovix::EntryResult plovix_unregister(std::uint32_t interface_version,
                                                         plovix::PageRegistry* registry,
                                                         plovix::EntryError* error) noexcept;

/// The factory for one identifier, for a host with its own registry.
/// @param interface_version  kInterfaceVersion as the caller was compiled with
/// @param identifier         "Plovix.Details", zero-terminated
/// @param factory            receives the factory, owned by the caller; emptied if there is none
/// @param error              receives the reason; may be null
PLOVIX_ENTRY_POINT plovix::EntryResult plovix_class_factory(std::uint32_t interface_version,
                                                            const char* identifier,
                                                            std::shared_ptr<plovix::PageFactory>* factory,
                                                            plovix::EntryError* error) noexcept;

/// True if no page, no factory and no other object of the library is alive, including weak references. Only
/// then may it be unloaded.
PLOVIX_ENTRY_POINT bool plovix_can_unload() noexcept;

namespace plovix {

/// Adds the pages to `registry`, for hosts that link the library. Fails with the entry point's reason: 457
/// for an identifier that is taken, otherwise 429.
inline void RegisterPages(PageRegistry& registry) {
  EntryError error{};
  const EntryResult result = plovix_register(kInterfaceVersion, &registry, &error);
  if (result == EntryResult::kDone) return;
  const bool taken = result == EntryResult::kAlreadyRegistered;
  throw Failure(taken ? failure_number::kKeyInUse : failure_number::kCannotCreateObject, error.text);
}

}  // namespace plovix
