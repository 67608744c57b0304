// The page of a yearly pattern: a date by its month and day, or the n-th day of a kind in a month.
#pragma once

#include <plovix/designs/recurrence_designs.h>
#include <plovix/framework/page_controls.h>

#include "pattern_page.h"

namespace plovix {

class YearlyRecurrence final
    : public PageWith<kYearlyRecurrenceDesign, PatternPage<YearlyPattern, store_key::kYearlyRecurrence,
                                                           &ObjectFactory::NewYearlyPattern>> {
 public:
  YearlyRecurrence();

 private:
  void Prepare() override;
  Outcome InitControls();
  Outcome RetrieveValues() override;
  // Whether the day's text and the chosen month are a date in the host's current year.
  [[nodiscard]] bool IsDateOfThisYear() const;
  std::optional<bool> ValidateSpecificDay();
  bool Validate() override;
  Outcome SaveValues() override;
  std::optional<bool> CanContinue() override;

  ComboBox& cboRelativeDayMonth = control<"cboRelativeDayMonth">();
  ComboBox& cboDayOfWeek = control<"cboDayOfWeek">();
  ComboBox& cboSpecificDayMonth = control<"cboSpecificDayMonth">();
  ComboBox& cboRelativeDay = control<"cboRelativeDay">();
  OptionButton& optRelativeDay = control<"optRelativeDay">();
  TextBox& txtSpecificDay = control<"txtSpecificDay">();
  OptionButton& optSpecificDay = control<"optSpecificDay">();
};

}  // namespace plovix
