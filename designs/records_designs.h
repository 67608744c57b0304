// Design of the actions page.
#pragma once

#include "design.h"

namespace plovix {

inline constexpr auto kActionsDesign =
    MakeDesign("Actions",
               {
                   {"VeloActionList", Kind::kHostSlot, "VeloDesignerCtrl.VeloActionList"},
                   {"lblTitle", Kind::kLabel, "Actions to execute when the automated task is run", "Lng=3;",
                    "", Style::kHeading},
               },
               {"lblTitle", "VeloActionList"});

}  // namespace plovix
