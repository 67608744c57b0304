#include "page_makers.h"

#include <plovix/framework/in_use.h>
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

#include <array>

namespace plovix {
namespace {

template <class Page>
std::shared_ptr<WizardPage> Make() {
  return MakeInUse<Page>();
}

// The identifier is made of the name in the page's design.
template <class... Pages>
std::array<PageMaker, sizeof...(Pages)> MakersOf() {
  return {PageMaker{"Plovix." + std::string(Pages::kPageName), Make<Pages>}...};
}

}  // namespace

std::span<const PageMaker> PageMakers() {
  static const auto makers =
      MakersOf<AutoTaskType, Details, Records, RecurrenceTime, RecurrencePattern, DailyRecurrence,
               WeeklyRecurrence, MonthlyRecurrence, YearlyRecurrence, Query, Actions>();
  return makers;
}

}  // namespace plovix
