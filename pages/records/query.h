// The page with the query that selects the records for the task's actions, typed or composed in the host's
// query builder. Any text is accepted, even an empty one.
#pragma once

#include <plovix/designs/records_designs.h>
#include <plovix/framework/page_controls.h>

namespace plovix {

class Query final : public PageWith<kQueryDesign> {
 public:
  Query();

  void IWizardPage_GetNextPage(std::string& next) override;

 private:
  Outcome RetrieveValues() override;
  Outcome SaveValues() override;
  void cmdBuild_Click();

  TextBox& txtQuery = control<"txtQuery">();
  CommandButton& cmdBuild = control<"cmdBuild">();
};

}  // namespace plovix
