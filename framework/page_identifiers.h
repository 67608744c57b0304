/// @file
/// The identifiers under which pages are created and named as next page. Which page follows which is in
/// docs/page-flow.md.
#pragma once

#include <string>

/// "Plovix." and the name of the page.
namespace plovix::page_identifier {

inline const std::string kAutoTaskType =
    "Plovix.AutoTaskType";                             ///< what records it processes; the first page
inline const std::string kDetails = "Plovix.Details";  ///< texts, data object, permissions
inline const std::string kRecords = "Plovix.Records";  ///< which records a scheduled run processes
inline const std::string kQuery = "Plovix.Query";      ///< what selects the records
inline const std::string kActions = "Plovix.Actions";  ///< what the task does; the last page
inline const std::string kRecurrencePattern = "Plovix.RecurrencePattern";  ///< the kind of pattern
inline const std::string kDailyRecurrence = "Plovix.DailyRecurrence";      ///< every N days
inline const std::string kWeeklyRecurrence = "Plovix.WeeklyRecurrence";    ///< every N weeks
inline const std::string kMonthlyRecurrence = "Plovix.MonthlyRecurrence";  ///< every N months
inline const std::string kYearlyRecurrence = "Plovix.YearlyRecurrence";    ///< every year
inline const std::string kRecurrenceTime = "Plovix.RecurrenceTime";        ///< the time within a day

}  // namespace plovix::page_identifier
