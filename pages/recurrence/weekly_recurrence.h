// The page of a weekly pattern: every N weeks on chosen days.
#pragma once

#include <plovix/designs/recurrence_designs.h>
#include <plovix/framework/page_controls.h>

#include <array>

#include "pattern_page.h"

namespace plovix {

class WeeklyRecurrence final
    : public PageWith<kWeeklyRecurrenceDesign, PatternPage<WeeklyPattern, store_key::kWeeklyRecurrence,
                                                           &ObjectFactory::NewWeeklyPattern>> {
 public:
  WeeklyRecurrence();

 private:
  Outcome RetrieveValues() override;
  Outcome SaveOnBack() override;
  std::optional<bool> ValidateWeeks();
  bool IsOneDayChecked();
  bool Validate() override;
  Outcome SaveValues() override;
  std::optional<bool> CanContinue() override;

  TextBox& txtWeeks = control<"txtWeeks">();
  CheckBox& chkSunday = control<"chkSunday">();
  CheckBox& chkMonday = control<"chkMonday">();
  CheckBox& chkTuesday = control<"chkTuesday">();
  CheckBox& chkWednesday = control<"chkWednesday">();
  CheckBox& chkThursday = control<"chkThursday">();
  CheckBox& chkFriday = control<"chkFriday">();
  CheckBox& chkSaturday = control<"chkSaturday">();
  // In the order of the pattern's day index, which starts with 1.
  const std::array<CheckBox*, 7> days_{&chkSunday,   &chkMonday, &chkTuesday, &chkWednesday,
                                       &chkThursday, &chkFriday, &chkSaturday};
};

}  // namespace plovix
