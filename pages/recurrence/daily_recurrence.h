// The page of a daily pattern: every N days, optionally on weekdays only.
#pragma once

#include <plovix/designs/recurrence_designs.h>
#include <plovix/framework/page_controls.h>

#include "pattern_page.h"

namespace plovix {

class DailyRecurrence final
    : public PageWith<kDailyRecurrenceDesign, PatternPage<DailyPattern, store_key::kDailyRecurrence,
                                                          &ObjectFactory::NewDailyPattern>> {
 public:
  DailyRecurrence();

 private:
  Outcome RetrieveValues() override;
  std::optional<bool> ValidateDays();
  bool Validate() override;
  Outcome SaveValues() override;
  std::optional<bool> CanContinue() override;

  CheckBox& chkWeekdays = control<"chkWeekdays">();
  TextBox& txtDays = control<"txtDays">();
};

}  // namespace plovix
