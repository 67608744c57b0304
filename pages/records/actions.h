// The last page of every full path: the actions that the task executes, edited in the host's action-list
// control.
#pragma once

#include <plovix/designs/records_designs.h>
#include <plovix/framework/page_controls.h>
#include <plovix/host/action_list_control.h>
#include <plovix/host/data_object.h>

namespace plovix {

class Actions final : public PageWith<kActionsDesign> {
 public:
  void IWizardPage_Terminate() override;
  void IWizardPage_GetNextPage(std::string& next) override { next.clear(); }

 private:
  Outcome RetrieveValues() override;
  Outcome SaveValues() override;
  // The context of the action list. Loads each collection at most once in the page's life. If a failure ends
  // it, the wait pointer stays until the next change of pointer.
  Ref<ValueStore> GetProperties();

  // The embedded control; fails with 91 if the host embedded none.
  [[nodiscard]] Ref<ActionListControl> List() const;

  plovix::HostSlot& VeloActionList = control<"VeloActionList">();
  Ref<plovix::DataObject> DataObject;
  Ref<ObjectCollection> DataObjects;
  Ref<ObjectCollection> DesignerObjects;
};

}  // namespace plovix
