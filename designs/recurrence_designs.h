// Designs of the recurrence pages. Captions are fallbacks for the language table. Two texts are shared on
// purpose: lblMonths of the monthly page has the number of the first ordinal, and the yearly page's
// introduction is that of the time of execution.
#pragma once

#include "design.h"

namespace plovix {

inline constexpr auto kRecurrencePatternDesign = MakeDesign(
    "RecurrencePattern",
    {
        {"lblTitle", Kind::kLabel, "Recurrence Pattern", "Lng=71;", "", Style::kHeading},
        {"lblIntro", Kind::kLabel, "Select the frequency at which you want this automated task to recur.",
         "Lng=72;"},
        {"optDaily", Kind::kOptionButton, "Daily Recurrence", "Lng=73;"},
        {"lblDaily", Kind::kLabel,
         "Select this recurrence pattern if you would like the automated task to be repeated every day.",
         "Lng=74;"},
        {"optWeekly", Kind::kOptionButton, "Weekly Recurrence", "Lng=75;"},
        {"lblWeekly", Kind::kLabel,
         "Select this recurrence pattern if you would like the automated task to be repeated every week.",
         "Lng=76;"},
        {"optMonthly", Kind::kOptionButton, "Monthly Recurrence", "Lng=77;"},
        {"lblMonthly", Kind::kLabel,
         "Select this recurrence pattern if you would like the automated task to be repeated every month.",
         "Lng=78;"},
        {"optYearly", Kind::kOptionButton, "Yearly Recurrence", "Lng=79;"},
        {"lblYearly", Kind::kLabel,
         "Select this recurrence pattern if you would like the automated task to be repeated every year.",
         "Lng=80;"},
    },
    {"lblTitle", "lblIntro", "optDaily", "lblDaily", "optWeekly", "lblWeekly", "optMonthly", "lblMonthly",
     "optYearly", "lblYearly"});

inline constexpr auto kDailyRecurrenceDesign =
    MakeDesign("DailyRecurrence",
               {
                   {"chkWeekdays", Kind::kCheckBox, "Process this task on weekdays only", "Lng=16;"},
                   {"txtDays", Kind::kTextBox},
                   {"lblEveryNDay", Kind::kLabel, "Repeat this automated task every", "Lng=14;"},
                   {"lblDays", Kind::kLabel, "day(s).", "Lng=15;"},
                   {"lblTitle", Kind::kLabel, "Daily Recurrence Pattern", "Lng=13;", "", Style::kHeading},
               },
               {"lblTitle", "lblEveryNDay txtDays lblDays", "chkWeekdays"});

inline constexpr auto kWeeklyRecurrenceDesign =
    MakeDesign("WeeklyRecurrence",
               {
                   {"lblTitle", Kind::kLabel, "Weekly Recurrence Pattern", "Lng=92;", "", Style::kHeading},
                   {"lblRepeat", Kind::kLabel, "Repeat this automated task every", "Lng=93;"},
                   {"txtWeeks", Kind::kTextBox},
                   {"lblWeeks", Kind::kLabel, "week(s) on:", "Lng=94;"},
                   {"chkSunday", Kind::kCheckBox, "Sunday", "Lng=44;"},
                   {"chkMonday", Kind::kCheckBox, "Monday", "Lng=45;"},
                   {"chkTuesday", Kind::kCheckBox, "Tuesday", "Lng=46;"},
                   {"chkWednesday", Kind::kCheckBox, "Wednesday", "Lng=47;"},
                   {"chkThursday", Kind::kCheckBox, "Thursday", "Lng=48;"},
                   {"chkFriday", Kind::kCheckBox, "Friday", "Lng=49;"},
                   {"chkSaturday", Kind::kCheckBox, "Saturday", "Lng=50;"},
               },
               {"lblTitle", "lblRepeat txtWeeks lblWeeks",
                "chkSunday chkMonday chkTuesday chkWednesday chkThursday chkFriday chkSaturday"});

inline constexpr auto kMonthlyRecurrenceDesign =
    MakeDesign("MonthlyRecurrence",
               {
                   {"txtRelativeDayMonth", Kind::kTextBox},
                   {"cboDayOfWeek", Kind::kComboBox},
                   {"cboRelativeDay", Kind::kComboBox},
                   {"txtDay", Kind::kTextBox},
                   {"optRelativeDay", Kind::kOptionButton, "the", "Lng=37;"},
                   {"txtSpecificDayMonth", Kind::kTextBox},
                   {"optSpecificDay", Kind::kOptionButton, "day", "Lng=34;"},
                   {"lblOfEvery2", Kind::kLabel, "of every", "Lng=38;"},
                   {"lblMonths", Kind::kLabel, "month(s).", "Lng=39;"},
                   {"lblIntro", Kind::kLabel, "Repeat this automated task on...", "Lng=33;"},
                   {"lblOfEvery1", Kind::kLabel, "of every", "Lng=35;"},
                   {"lblDays", Kind::kLabel, "month(s).", "Lng=36;"},
                   {"lblTitle", Kind::kLabel, "Monthly Recurrence Pattern", "Lng=32;", "", Style::kHeading},
               },
               {"lblTitle", "lblIntro", "optSpecificDay txtDay lblOfEvery1 txtSpecificDayMonth lblDays",
                "optRelativeDay cboRelativeDay cboDayOfWeek lblOfEvery2 txtRelativeDayMonth lblMonths"});

inline constexpr auto kYearlyRecurrenceDesign =
    MakeDesign("YearlyRecurrence",
               {
                   {"cboRelativeDayMonth", Kind::kComboBox},
                   {"cboDayOfWeek", Kind::kComboBox},
                   {"cboSpecificDayMonth", Kind::kComboBox},
                   {"cboRelativeDay", Kind::kComboBox},
                   {"optRelativeDay", Kind::kOptionButton, "the", "Lng=37;"},
                   {"txtSpecificDay", Kind::kTextBox},
                   {"optSpecificDay", Kind::kOptionButton, "every", "Lng=87;"},
                   {"Label3", Kind::kLabel, "of", "Lng=98;"},
                   {"lblIntro", Kind::kLabel, "Repeat this automated task...", "Lng=82;"},
                   {"lblTitle", Kind::kLabel, "Yearly Recurrence Pattern", "Lng=122;", "", Style::kHeading},
               },
               {"lblTitle", "lblIntro", "optSpecificDay cboSpecificDayMonth txtSpecificDay",
                "optRelativeDay cboRelativeDay cboDayOfWeek Label3 cboRelativeDayMonth"});

inline constexpr auto kRecurrenceTimeDesign =
    MakeDesign("RecurrenceTime",
               {
                   {"lblTitle", Kind::kLabel, "Time of execution", "Lng=81;", "", Style::kHeading},
                   {"lblIntro", Kind::kLabel, "Execute this automated task...", "Lng=82;"},
                   {"optSpecificTime", Kind::kOptionButton, "at", "Lng=83;"},
                   {"dtpTime", Kind::kDateTimePicker, "", "", "", Style::kTime},
                   {"optEveryNMinute", Kind::kOptionButton, "every", "Lng=84;"},
                   {"txtMinutes", Kind::kTextBox},
                   {"lblMinutes", Kind::kLabel, "minute(s).", "Lng=85;"},
                   {"optEveryNHour", Kind::kOptionButton, "every", "Lng=84;"},
                   {"txtHours", Kind::kTextBox},
                   {"lblHours", Kind::kLabel, "hour(s).", "Lng=86;"},
               },
               {"lblTitle", "lblIntro", "optSpecificTime dtpTime", "optEveryNMinute txtMinutes lblMinutes",
                "optEveryNHour txtHours lblHours"});

}  // namespace plovix
