/// @file
/// The action-list editing control that the host embeds in the Actions page under the registered name
/// "VeloDesignerCtrl.VeloActionList".
#pragma once

#include <functional>

#include "action_list.h"
#include "value_store.h"

namespace plovix {

/// Without it in its slot the Actions page reports failure 91 and shows no actions.
class ActionListControl : public HostControl {
 public:
  /// Called by the control when it needs its context; the page fills the reference with a fresh ValueStore:
  /// "DataObjectKey" (text), "DesignerObjectType" (one of record_mode_bit; absent for an unknown record
  /// mode), and the store keys kDataObject, kDataObjects and kDesignerObjects. It stays nothing when that
  /// failed.
  using ContextRequest = std::function<void(Ref<ValueStore>& context)>;

  /// Takes the actions to edit; the list given is not changed by editing. Called while the page is
  /// initialized.
  virtual void Load(const Ref<ActionList>& actions) = 0;
  /// The actions as edited: a list of their own, never nothing. Called whenever the page saves.
  [[nodiscard]] virtual Ref<ActionList> Actions() = 0;
  /// Replaces an earlier handler; an empty one takes it away, which the page does in its Terminate. It may be
  /// called while the page that gave it is the current one.
  virtual void OnContextRequest(ContextRequest handler) = 0;
};

}  // namespace plovix
