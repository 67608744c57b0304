#include "entry_points.h"

#include <plovix/base/utf8.h>
#include <plovix/framework/in_use.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "page_makers.h"

namespace plovix {
namespace {

static_assert(kInterfaceVersion == PLOVIX_INTERFACE_VERSION,
              "the library's file name carries another number");

class Factory final : public PageFactory {
 public:
  explicit Factory(const PageMaker& maker) : maker_(maker) {}
  [[nodiscard]] const std::string& Identifier() const noexcept override { return maker_.identifier; }
  [[nodiscard]] std::shared_ptr<WizardPage> CreatePage() override { return maker_.make(); }

 private:
  const PageMaker& maker_;
};

bool IsOurs(const std::shared_ptr<PageFactory>& factory) {
  return dynamic_cast<const Factory*>(factory.get()) != nullptr;
}

// What goes wrong in an entry point: the result, and the reason.
struct Refusal {
  EntryResult result;
  std::string reason;
};

void Write(EntryError* error, const std::string& reason) {
  if (error == nullptr) return;
  const std::string_view kept = FirstBytes(reason, sizeof error->text - 1);
  std::memcpy(error->text, kept.data(), kept.size());
  error->text[kept.size()] = '\0';
}

void Require(bool holds, EntryResult result, const std::string& reason) {
  if (!holds) throw Refusal{result, reason};
}

// The frame of every entry point: a caller of another version changes nothing, and no failure escapes.
template <class Work>
EntryResult Enter(std::uint32_t version, EntryError* error, Work work) noexcept {
  try {
    Write(error, "");
    Require(version == kInterfaceVersion, EntryResult::kWrongVersion,
            "The host was compiled for interface version " + std::to_string(version) +
                " of Plovix; this library has " + std::to_string(kInterfaceVersion));
    work();
    return EntryResult::kDone;
  } catch (const Refusal& refusal) {
    Write(error, refusal.reason);
    return refusal.result;
  } catch (...) {
    Write(error, CurrentFailure().Description());
    return EntryResult::kFailed;
  }
}

void RequirePointer(const void* pointer, const std::string& name) {
  Require(pointer != nullptr, EntryResult::kInvalidArgument, "No " + name + " was given");
}

}  // namespace
}  // namespace plovix

using plovix::EntryError;
using plovix::EntryResult;

std::uint32_t plovix_interface_version() noexcept {
  return plovix::kInterfaceVersion;
}

EntryResult plovix_register(std::uint32_t interface_version, plovix::PageRegistry* registry,
                            EntryError* error) noexcept {
  return plovix::Enter(interface_version, error, [&] {
    plovix::RequirePointer(registry, "registry");
    for (const plovix::PageMaker& maker : plovix::PageMakers()) {
      plovix::Require(!registry->Find(maker.identifier), EntryResult::kAlreadyRegistered,
                      "A page is already registered as " + plovix::Quoted(maker.identifier));
    }
    plovix::PageRegistry extended = *registry;
    for (const plovix::PageMaker& maker : plovix::PageMakers()) {
      extended.Add(plovix::MakeInUse<plovix::Factory>(maker));
    }
    *registry = std::move(extended);
  });
}

EntryResult plovix_unregister(std::uint32_t interface_version, plovix::PageRegistry* registry,
                              EntryError* error) noexcept {
  return plovix::Enter(interface_version, error, [&] {
    plovix::RequirePointer(registry, "registry");
    bool found = false;
    for (const plovix::PageMaker& maker : plovix::PageMakers()) {
      if (!plovix::IsOurs(registry->Find(maker.identifier))) continue;
      registry->Remove(maker.identifier);
      found = true;
    }
    plovix::Require(found, EntryResult::kNotRegistered, "The registry holds no page of this library");
  });
}

EntryResult plovix_class_factory(std::uint32_t interface_version, const char* identifier,
                                 std::shared_ptr<plovix::PageFactory>* factory, EntryError* error) noexcept {
  return plovix::Enter(interface_version, error, [&] {
    plovix::RequirePointer(factory, "place for the factory");
    factory->reset();
    plovix::RequirePointer(identifier, "identifier");
    const auto makers = plovix::PageMakers();
    const auto maker =
        std::ranges::find(makers, std::string_view(identifier), &plovix::PageMaker::identifier);
    plovix::Require(maker != makers.end(), EntryResult::kUnknownIdentifier,
                    "No page of Plovix has the identifier " + plovix::Quoted(identifier));
    *factory = plovix::MakeInUse<plovix::Factory>(*maker);
  });
}

bool plovix_can_unload() noexcept {
  return plovix::InUse::Count() == 0;
}
