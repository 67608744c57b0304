// The page of a monthly pattern: a day by its number, or the n-th day of a kind, every N months.
#pragma once

#include <plovix/designs/recurrence_designs.h>
#include <plovix/framework/page_controls.h>

#include "pattern_page.h"

namespace plovix {

class MonthlyRecurrence final
    : public PageWith<kMonthlyRecurrenceDesign, PatternPage<MonthlyPattern, store_key::kMonthlyRecurrence,
                                                            &ObjectFactory::NewMonthlyPattern>> {
 public:
  MonthlyRecurrence();

 private:
  void Prepare() override;
  Outcome InitControls();
  Outcome RetrieveValues() override;
  std::optional<bool> ValidateSpecificDay();
  std::optional<bool> ValidateSpecificDayMonth();
  std::optional<bool> ValidateRelativeDayMonth();
  bool Validate() override;
  Outcome SaveValues() override;
  std::optional<bool> CanContinue() override;

  TextBox& txtRelativeDayMonth = control<"txtRelativeDayMonth">();
  ComboBox& cboDayOfWeek = control<"cboDayOfWeek">();
  ComboBox& cboRelativeDay = control<"cboRelativeDay">();
  TextBox& txtDay = control<"txtDay">();
  OptionButton& optRelativeDay = control<"optRelativeDay">();
  TextBox& txtSpecificDayMonth = control<"txtSpecificDayMonth">();
  OptionButton& optSpecificDay = control<"optSpecificDay">();
};

}  // namespace plovix
