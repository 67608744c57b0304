/// @file
/// The library's door: plain functions that a host calls, linked or looked up at run time (page_library.h).
/// Nothing else of libplovix is exported. No function lets a failure through; each says what went wrong in
/// its answer and, where the caller gives room for it, in words.
#pragma once

#include <cstdint>
#include <memory>

#include "page_registry.h"

namespace plovix {

/// Version of all that crosses the door: the functions below and the classes of controls/, host/ and
/// framework/wizard_page.h. Raised whenever one of them changes so that a host has to be compiled again; it
/// is also the number behind the shared library's name.
inline constexpr std::uint32_t kInterfaceVersion = 1;

/// What an entry point answers. The numbers never change.
enum class EntryResult : std::int32_t {
  kDone = 0,
  kWrongVersion = 1,       ///< the caller was compiled for another interface version; nothing was touched
  kUnknownIdentifier = 2,  ///< no page has that identifier
  kAlreadyRegistered = 3,  ///< an identifier of the component is taken; the registry is as it was
  kNotRegistered = 4,      ///< the registry holds no page of this library
  kInvalidArgument = 5,    ///< a required pointer is null
  kFailed = 6,             ///< anything else, such as exhausted memory; a registry is as it was
};

/// The reason in English, for a log or a developer: UTF-8, ended by a zero; empty after kDone.
struct EntryError {
  char text[256];  ///< cut off where it is longer
};

}  // namespace plovix

/// Marks what the shared library exports.
#define PLOVIX_ENTRY_POINT extern "C" __attribute__((visibility("default")))

/// The interface version that the library was compiled with: compare it with kInterfaceVersion before
/// anything else. This function alone never changes its signature.
PLOVIX_ENTRY_POINT std::uint32_t plovix_interface_version() noexcept;

/// Enters all pages into `registry`, or none.
/// @param interface_version  kInterfaceVersion as the caller was compiled with
/// @param registry           the caller's; holds the library in use until plovix_unregister()
/// @param error              receives the reason; may be null
PLOVIX_ENTRY_POINT plovix::EntryResult plovix_register(std::uint32_t interface_version,
                                                       plovix::PageRegistry* registry,
                                                       plovix::EntryError* error) noexcept;

/// Takes the pages of this library out of `registry` again. Pages that were made already live on.
/// @param interface_version  kInterfaceVersion as the caller was compiled with
/// @param registry           the one that was given to plovix_register()
/// @param error              receives the reason; may be null
PLOVIX_ENTRY_POINT plovix::EntryResult plovix_unregister(std::uint32_t interface_version,
                                                         plovix::PageRegistry* registry,
                                                         plovix::EntryError* error) noexcept;

/// The factory for one identifier, for a host with a registry of its own.
/// @param interface_version  kInterfaceVersion as the caller was compiled with
/// @param identifier         "Plovix.Details", zero-terminated
/// @param factory            receives the factory, owned by the caller; emptied where there is none
/// @param error              receives the reason; may be null
PLOVIX_ENTRY_POINT plovix::EntryResult plovix_class_factory(std::uint32_t interface_version,
                                                            const char* identifier,
                                                            std::shared_ptr<plovix::PageFactory>* factory,
                                                            plovix::EntryError* error) noexcept;

/// True when no page, no factory and no other object of the library is alive, weak references included: then,
/// and only then, it may be unloaded.
PLOVIX_ENTRY_POINT bool plovix_can_unload() noexcept;

namespace plovix {

/// Enters the pages into `registry`, for hosts that are linked with the library. Fails with the entry point's
/// reason: 457 for an identifier that is taken, else 429.
inline void RegisterPages(PageRegistry& registry) {
  EntryError error{};
  const EntryResult result = plovix_register(kInterfaceVersion, &registry, &error);
  if (result == EntryResult::kDone) return;
  const bool taken = result == EntryResult::kAlreadyRegistered;
  throw Failure(taken ? failure_number::kKeyInUse : failure_number::kCannotCreateObject, error.text);
}

}  // namespace plovix
