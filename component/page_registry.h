/// @file
/// Pages by identifier, from which a wizard framework creates its pages. A host owns one registry; libraries
/// add their pages to it, this one through plovix_register().
#pragma once

#include <plovix/base/utf8.h>
#include <plovix/framework/wizard_page.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace plovix {

/// Creates the pages of one identifier. Implemented by the library that contains the page, whose code stays
/// in use as long as a factory or one of its pages lives.
class PageFactory {
 public:
  virtual ~PageFactory() = default;
  /// "Plovix.Details"; lives as long as the factory.
  [[nodiscard]] virtual const std::string& Identifier() const noexcept = 0;
  /// A new page, not yet initialized; never null. The caller owns it.
  [[nodiscard]] virtual std::shared_ptr<WizardPage> CreatePage() = 0;
};

/// The factories, by identifier. Identifiers are case-sensitive. Not thread-safe.
class PageRegistry {
 public:
  /// Fails with 457 if the identifier is taken, with 5 if there is no factory.
  void Add(std::shared_ptr<PageFactory> factory) {
    if (!factory) throw Failure(failure_number::kInvalidCall, "No page factory was given");
    const std::string& identifier = factory->Identifier();
    if (factories_.contains(identifier)) {
      throw Failure(failure_number::kKeyInUse, "A page is already registered as " + Quoted(identifier));
    }
    factories_.emplace(identifier, std::move(factory));
  }
  /// Does nothing for an unknown identifier. Existing page objects live on.
  void Remove(std::string_view identifier) {
    const auto found = factories_.find(identifier);
    if (found != factories_.end()) factories_.erase(found);
  }
  /// Null for an unknown identifier.
  [[nodiscard]] std::shared_ptr<PageFactory> Find(std::string_view identifier) const {
    const auto found = factories_.find(identifier);
    return found == factories_.end() ? nullptr : found->second;
  }
  /// A new page; null for an unknown identifier.
  [[nodiscard]] std::shared_ptr<WizardPage> Create(std::string_view identifier) const {
    const auto factory = Find(identifier);
    return factory ? factory->CreatePage() : nullptr;
  }
  /// Sorted.
  [[nodiscard]] std::vector<std::string> Identifiers() const {
    std::vector<std::string> identifiers;
    identifiers.reserve(factories_.size());
    for (const auto& [identifier, factory] : factories_) identifiers.push_back(identifier);
    return identifiers;
  }

 private:
  std::map<std::string, std::shared_ptr<PageFactory>, std::less<>> factories_;
};

}  // namespace plovix
