// Designs of the task type page and the details page. Captions are fallbacks for the language table. Two tags
// are irregular on purpose: lblSingleRecord lacks the semicolon, fraSettings is lower case.
#pragma once

#include "design.h"

namespace plovix {

inline constexpr auto kAutoTaskTypeDesign = MakeDesign(
    "AutoTaskType",
    {
        {"lblTitle", Kind::kLabel, "Automated Task Record Handling Configuration", "Lng=6;", "",
         Style::kHeading},
        {"lblIntro", Kind::kLabel, "Please indicate the nature of data the automated task will process.",
         "Lng=7;"},
        {"optNoData", Kind::kOptionButton, "No Data", "Lng=8;"},
        {"lblNoData", Kind::kLabel,
         "Ce type de tâche automatisée est habituellement préféré lorsqu'une ou plusieurs actions doivent "
         "être "
         "exécutées pour démarrer des processus qui n'ont pas besoin d'enregistrement courant, telle que "
         "l’exécution d'un programme externe.",
         "Lng=9;"},
        {"optSingleRecord", Kind::kOptionButton, "Single Record", "Lng=115;"},
        {"lblSingleRecord", Kind::kLabel,
         "Ce type de tâche automatisée est habituellement préféré lorsqu'une ou plusieurs actions doivent "
         "être "
         "exécutées pour un enregistrement dans un écran ou un rapport.",
         "Lng=116"},
        {"optQueryResults", Kind::kOptionButton, "Query Results", "Lng=10;"},
        {"lblQueryResults", Kind::kLabel,
         "Ce type de tâche requiert qu'une requête soit définie et exécutée avant que les actions de la "
         "tâche ne "
         "soient traitées. Chaque action est exécutée pour chacun des enregistrements trouvés.",
         "Lng=11;"},
    },
    {"lblTitle", "lblIntro", "optNoData", "lblNoData", "optSingleRecord", "lblSingleRecord",
     "optQueryResults", "lblQueryResults"});

inline constexpr auto kDetailsDesign =
    MakeDesign("Details",
               {
                   {"cmdShortDescriptionLangTag", Kind::kCommandButton, "..."},
                   {"cmdDescriptionLangTag", Kind::kCommandButton, "..."},
                   {"cmdNameLangTag", Kind::kCommandButton, "..."},
                   {"cmdCategoryLangTag", Kind::kCommandButton, "..."},
                   {"fraSettings", Kind::kFrame, "Settings", "lng=118;"},
                   {"chkSkipRowSelection", Kind::kCheckBox, "Skip row selection", "Lng=121;", "fraSettings"},
                   {"chkAutoMan", Kind::kCheckBox, "This task can be used by the Automation Manager",
                    "Lng=119;", "fraSettings"},
                   {"chkPersonalTask", Kind::kCheckBox, "This is a personal task", "Lng=24;", "fraSettings"},
                   {"txtName", Kind::kTextBox},
                   {"txtDescription", Kind::kTextBox, "", "", "", Style::kMultiLine},
                   {"cboCategory", Kind::kComboBox, "", "", "", Style::kEditable},
                   {"cboDataObject", Kind::kComboBox},
                   {"txtShortDescription", Kind::kTextBox},
                   {"lblShortDescription", Kind::kLabel, "Short Description", "Lng=123;"},
                   {"lblPermissions", Kind::kLabel, "Edit the permissions for this Automated Task", "Lng=25;",
                    "", Style::kLink},
                   {"lblTitle", Kind::kLabel, "Automated Task Details", "Lng=19;", "", Style::kHeading},
                   {"lblName", Kind::kLabel, "Name", "Lng=20;"},
                   {"lblDescription", Kind::kLabel, "Description", "Lng=21;"},
                   {"lblCategory", Kind::kLabel, "Category", "Lng=22;"},
                   {"lblDataObject", Kind::kLabel, "Data Object", "Lng=23;"},
               },
               {"lblTitle", "lblName txtName cmdNameLangTag",
                "lblShortDescription txtShortDescription cmdShortDescriptionLangTag",
                "lblDescription txtDescription cmdDescriptionLangTag",
                "lblCategory cboCategory cmdCategoryLangTag", "lblDataObject cboDataObject", "fraSettings",
                "chkSkipRowSelection", "chkAutoMan", "chkPersonalTask", "lblPermissions"});

}  // namespace plovix
