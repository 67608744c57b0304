#include "page_makers.h"

#include <plovix/framework/in_use.h>
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
namespace {

template <class T>
std::shared_ptr<WizardPage> Make() {
  return MakeInUse<T>();
}

}  // namespace

const std::array<PageMaker, kPageCount>& PageMakers() {
  using namespace page_identifier;
  static const std::array<PageMaker, kPageCount> makers{{
      {kAutoTaskType, Make<AutoTaskType>},
      {kDetails, Make<Details>},
      {kRecords, Make<Records>},
      {kRecurrenceTime, Make<RecurrenceTime>},
      {kRecurrencePattern, Make<RecurrencePattern>},
      {kDailyRecurrence, Make<DailyRecurrence>},
      {kWeeklyRecurrence, Make<WeeklyRecurrence>},
      {kMonthlyRecurrence, Make<MonthlyRecurrence>},
      {kYearlyRecurrence, Make<YearlyRecurrence>},
      {kQuery, Make<Query>},
      {kActions, Make<Actions>},
  }};
  return makers;
}

}  // namespace plovix
