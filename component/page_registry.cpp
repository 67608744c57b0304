#include "page_registry.h"

#include <plovix/framework/page_identifiers.h>
#include <plovix/pages/records/actions.h>
#include <plovix/pages/records/query.h>
#include <plovix/pages/records/records.h>
#include <plovix/pages/recurrence/daily_recurrence.h>
#include <plovix/pages/recurrence/monthly_recurrence.h>
#include <plovix/pages/recurrence/recurrence_pattern.h>
#include <plovix/pages/recurrence/recurrence_time.h>
#include <plovix/pages/recurrence/weekly_recurrence.h>
#include <plovix/pages/recurrence/yearly_recurrence.h>
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
  using namespace page_identifier;
  registry.Register(kAutoTaskType, [] { return std::make_shared<AutoTaskType>(); });
  registry.Register(kDetails, [] { return std::make_shared<Details>(); });
  registry.Register(kRecords, [] { return std::make_shared<Records>(); });
  registry.Register(kQuery, [] { return std::make_shared<Query>(); });
  registry.Register(kRecurrenceTime, [] { return std::make_shared<RecurrenceTime>(); });
  registry.Register(kRecurrencePattern, [] { return std::make_shared<RecurrencePattern>(); });
  registry.Register(kDailyRecurrence, [] { return std::make_shared<DailyRecurrence>(); });
  registry.Register(kWeeklyRecurrence, [] { return std::make_shared<WeeklyRecurrence>(); });
  registry.Register(kMonthlyRecurrence, [] { return std::make_shared<MonthlyRecurrence>(); });
  registry.Register(kYearlyRecurrence, [] { return std::make_shared<YearlyRecurrence>(); });
  registry.Register(kActions, [] { return std::make_shared<Actions>(); });
}

}  // namespace plovix
