/// @file
/// The host's wizard object as a page sees it.
#pragma once

#include <plovix/base/requirements.h>

namespace plovix {

/// Implemented by the wizard, passed to a page with IWizardPage_Initialize and kept by it until
/// IWizardPage_Terminate. Both members may be called while the wizard is calling the page.
class WizardHost {
 public:
  virtual ~WizardHost() = default;
  /// Updates the buttons; `can_continue` says whether the page's content allows moving on. Called by
  /// IWizardPage_Initialize and after the user's changes. Until a page calls it, moving on is allowed.
  virtual void Refresh(bool can_continue) = 0;
  /// Advances exactly as if Next had been pressed. On return the calling page may have been replaced, but it
  /// lives until its event procedure ends. Called when a choice is double-clicked.
  virtual void MoveNext() = 0;
};

}  // namespace plovix
