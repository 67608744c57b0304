// The page of the time of execution: at a time of day, every N minutes, or every N hours.
#pragma once

#include <plovix/designs/recurrence_designs.h>
#include <plovix/framework/page_controls.h>

#include "numeric_page.h"

namespace plovix {

class RecurrenceTime final : public PageWith<kRecurrenceTimeDesign, NumericPage> {
 public:
  RecurrenceTime();

  void IWizardPage_GetNextPage(std::string& next) override;

 private:
  // Gives a task without a recurrence a new one, so that no scheduled task leaves the wizard without it.
  Outcome RetrieveValues() override;
  std::optional<bool> ValidateMinutes();
  std::optional<bool> ValidateHours();
  bool Validate() override;
  Outcome SaveValues() override;
  std::optional<bool> CanContinue() override;

  OptionButton& optSpecificTime = control<"optSpecificTime">();
  DateTimePicker& dtpTime = control<"dtpTime">();
  OptionButton& optEveryNMinute = control<"optEveryNMinute">();
  TextBox& txtMinutes = control<"txtMinutes">();
  OptionButton& optEveryNHour = control<"optEveryNHour">();
  TextBox& txtHours = control<"txtHours">();
};

}  // namespace plovix
