// The wizard's entry page: what records the task processes.
#pragma once

#include <plovix/designs/task_designs.h>
#include <plovix/framework/page_controls.h>

namespace plovix {

class AutoTaskType final : public PageWith<kAutoTaskTypeDesign, PageBase> {
 public:
  AutoTaskType();

  // Without a handler: failures go to the caller, as from every operation of this page.
  void IWizardPage_Initialize(Ref<WizardHost> host, Ref<ValueStore> store) override;
  void IWizardPage_GetNextPage(std::string& next) override;
  bool IWizardPage_CanChangePage(ChangeDirection direction) override;

 private:
  void LoadChoice();
  [[nodiscard]] std::int16_t ChosenMode() const;
  // True if the page may be left; asks before a changed mode empties the task's actions.
  bool SaveValues();
  // Asks, and empties the task's actions; false if the user declined or it could not be done.
  bool DropActions(Statements& run);

  OptionButton& optNoData = control<"optNoData">();
  Label& lblNoData = control<"lblNoData">();
  OptionButton& optSingleRecord = control<"optSingleRecord">();
  Label& lblSingleRecord = control<"lblSingleRecord">();
  OptionButton& optQueryResults = control<"optQueryResults">();
  Label& lblQueryResults = control<"lblQueryResults">();
};

}  // namespace plovix
