// The identifiers under which pages are created and named as next page.
#pragma once

#include <string>

namespace plovix::page_identifier {

inline const std::string kAutoTaskType = "Plovix.AutoTaskType";
inline const std::string kDetails = "Plovix.Details";
inline const std::string kRecords = "Plovix.Records";
inline const std::string kQuery = "Plovix.Query";
inline const std::string kActions = "Plovix.Actions";
inline const std::string kRecurrencePattern = "Plovix.RecurrencePattern";
inline const std::string kDailyRecurrence = "Plovix.DailyRecurrence";
inline const std::string kWeeklyRecurrence = "Plovix.WeeklyRecurrence";
inline const std::string kMonthlyRecurrence = "Plovix.MonthlyRecurrence";
inline const std::string kYearlyRecurrence = "Plovix.YearlyRecurrence";
inline const std::string kRecurrenceTime = "Plovix.RecurrenceTime";

}  // namespace plovix::page_identifier
