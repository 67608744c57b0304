// Pages by identifier: what a wizard creates its pages from.
#pragma once

#include <plovix/framework/page_base.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace plovix {

class PageRegistry {
 public:
  using Factory = std::function<std::shared_ptr<WizardPage>()>;

  // Fails with 457 when the identifier is taken.
  void Register(const std::string& identifier, Factory factory);
  // A fresh page object; nothing for an unknown identifier.
  [[nodiscard]] std::shared_ptr<WizardPage> Create(const std::string& identifier) const;
  [[nodiscard]] std::vector<std::string> Identifiers() const;  // sorted

 private:
  std::map<std::string, Factory> factories_;
};

// Registers every page of the component: "Plovix." and the page's name.
void RegisterPages(PageRegistry& registry);

}  // namespace plovix
