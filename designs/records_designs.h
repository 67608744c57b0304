// Designs of the records settings page, the query page and the actions page.
#pragma once

#include "design.h"

namespace plovix {

// The failed-records box is enabled and the pickers are disabled, to match the unchecked boxes, because
// loading runs no handler for a box that keeps its value.
inline constexpr auto kRecordsDesign = MakeDesign(
    "Records",
    {
        {"chkFailedRecords", Kind::kCheckBox, "Process failed records (Clear failed records history)",
         "Lng=67;"},
        {"optModified", Kind::kOptionButton, "Process only the records that have been modified", "Lng=64;"},
        {"optOnce", Kind::kOptionButton, "Process each record only once", "Lng=63;"},
        {"optEveryTime", Kind::kOptionButton, "Process each record every time the automated task runs",
         "Lng=65;"},
        {"dtpDate", Kind::kDateTimePicker, "", "", "", Style::kDisabled},
        {"chkUseBaseDate", Kind::kCheckBox,
         "Process records updated on or after the following date:", "Lng=68;"},
        {"chkProcessAll", Kind::kCheckBox, "Process all records (Clear processed records history)",
         "Lng=66;"},
        {"dtpTime", Kind::kDateTimePicker, "", "", "", Style::kTime | Style::kDisabled},
        {"lblIntro", Kind::kLabel,
         "This section allows you to specify different settings that will affect which records will be "
         "processed "
         "when the task runs. This is particularly useful when a huge number of records can be returned.",
         "Lng=62;"},
        {"lblTime", Kind::kLabel, "Time:", "Lng=70;"},
        {"lblDate", Kind::kLabel, "Date:", "Lng=69;"},
        {"lblTitle", Kind::kLabel, "Records Settings", "Lng=61;", "", Style::kHeading},
    },
    {"lblTitle", "lblIntro", "optOnce", "optModified", "optEveryTime", "chkProcessAll", "chkFailedRecords",
     "chkUseBaseDate", "lblDate dtpDate", "lblTime dtpTime"});

inline constexpr auto kQueryDesign =
    MakeDesign("Query",
               {
                   {"lblTitle", Kind::kLabel, "Query", "Lng=59;", "", Style::kHeading},
                   {"txtQuery", Kind::kTextBox, "", "", "", Style::kMultiLine},
                   {"cmdBuild", Kind::kCommandButton, "&Build", "Lng=60;"},
               },
               {"lblTitle", "txtQuery", "cmdBuild"});

inline constexpr auto kActionsDesign =
    MakeDesign("Actions",
               {
                   {"VeloActionList", Kind::kHostSlot, "VeloDesignerCtrl.VeloActionList"},
                   {"lblTitle", Kind::kLabel, "Actions to execute when the automated task is run", "Lng=3;",
                    "", Style::kHeading},
               },
               {"lblTitle", "VeloActionList"});

}  // namespace plovix
