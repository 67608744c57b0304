/// @file
/// The action-list editing control that the host embeds in the Actions page under the registered name
/// "VeloDesignerCtrl.VeloActionList".
#pragma once

#include <functional>

#include "action_list.h"
#include "value_store.h"

namespace plovix {

/// If its slot is empty, the Actions page reports failure 91 and shows no actions.
class ActionListControl : public HostControl {
 public:
  /// Called by the control when it needs its context; the page fills the reference with a new ValueStore:
  /// "DataObjectKey" (text), "DesignerObjectType" (one of record_mode_bit; absent for an unknown record
  /// mode), and the store keys kDataObject, kDataObjects and kDesignerObjects. The reference stays null if
  /// that fails.
  using ContextRequest = std::function<void(Ref<ValueStore>& context)>;

  /// Takes the actions to edit; editing does not change the given list. Called while the page is initialized.
  virtual void Load(const Ref<ActionList>& actions) = 0;
  /// The edited actions, in a separate list; never null. Called whenever the page saves.
  [[nodiscard]] virtual Ref<ActionList> Actions() = 0;
  /// Replaces an earlier handler; an empty one removes it, which the page does in its Terminate. The handler
  /// may be called while the page that set it is the current one.
  virtual void OnContextRequest(ContextRequest handler) = 0;
};

}  // namespace plovix
