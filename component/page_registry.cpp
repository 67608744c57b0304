#include "page_registry.h"

#include <plovix/framework/page_identifiers.h>
#include <plovix/pages/records/actions.h>
#include <plovix/pages/task/auto_task_type.h>
#include <plovix/pages/task/details.h>

namespace plovix {

void PageRegistry::Register(const std::string& identifier, Factory factory) {
  if (!factories_.emplace(identifier, std::move(factory)).second) {
    throw Failure(failure_number::kKeyInUse, "A page is already registered as " + identifier);
  }
}

std::shared_ptr<WizardPage> PageRegistry::Create(const std::string& identifier) const {
  const auto found = factories_.find(identifier);
  return found == factories_.end() ? nullptr : found->second();
}

std::vector<std::string> PageRegistry::Identifiers() const {
  std::vector<std::string> identifiers;
  identifiers.reserve(factories_.size());
  for (const auto& [identifier, factory] : factories_) identifiers.push_back(identifier);
  return identifiers;
}

void RegisterPages(PageRegistry& registry) {
  registry.Register(page_identifier::kAutoTaskType, [] { return std::make_shared<AutoTaskType>(); });
  registry.Register(page_identifier::kDetails, [] { return std::make_shared<Details>(); });
  registry.Register(page_identifier::kActions, [] { return std::make_shared<Actions>(); });
}

}  // namespace plovix
