/// @file
/// The identifiers under which pages are created and named as the next page. docs/page-flow.md shows which
/// page follows which.
#pragma once

#include <plovix/base/requirements.h>

/// "Plovix." and the name of the page. Character arrays, because each library and program that includes this
/// would construct its own copy of an object with a constructor.
namespace plovix::page_identifier {

inline constexpr char kAutoTaskType[] = "Plovix.AutoTaskType";  ///< what records it processes; the first page
inline constexpr char kDetails[] = "Plovix.Details";            ///< texts, data object, permissions
inline constexpr char kRecords[] = "Plovix.Records";            ///< which records a scheduled run processes
inline constexpr char kQuery[] = "Plovix.Query";                ///< what selects the records
inline constexpr char kActions[] = "Plovix.Actions";            ///< what the task does; the last page
inline constexpr char kRecurrencePattern[] = "Plovix.RecurrencePattern";  ///< the kind of pattern
inline constexpr char kDailyRecurrence[] = "Plovix.DailyRecurrence";      ///< every N days
inline constexpr char kWeeklyRecurrence[] = "Plovix.WeeklyRecurrence";    ///< every N weeks
inline constexpr char kMonthlyRecurrence[] = "Plovix.MonthlyRecurrence";  ///< every N months
inline constexpr char kYearlyRecurrence[] = "Plovix.YearlyRecurrence";    ///< every year
inline constexpr char kRecurrenceTime[] = "Plovix.RecurrenceTime";        ///< the time within a day

}  // namespace plovix::page_identifier
