// The records settings page: which records a run of the task processes, and since which update.
#pragma once

#include <plovix/designs/records_designs.h>
#include <plovix/framework/page_controls.h>

namespace plovix {

class Records final : public PageWith<kRecordsDesign> {
 public:
  Records();

  void IWizardPage_GetNextPage(std::string& next) override;

 private:
  Outcome RetrieveValues() override;
  Outcome SaveValues() override;
  void chkProcessAll_Click();
  void chkUseBaseDate_Click();

  CheckBox& chkFailedRecords = control<"chkFailedRecords">();
  OptionButton& optModified = control<"optModified">();
  OptionButton& optOnce = control<"optOnce">();
  OptionButton& optEveryTime = control<"optEveryTime">();
  DateTimePicker& dtpDate = control<"dtpDate">();
  CheckBox& chkUseBaseDate = control<"chkUseBaseDate">();
  CheckBox& chkProcessAll = control<"chkProcessAll">();
  DateTimePicker& dtpTime = control<"dtpTime">();
};

}  // namespace plovix
