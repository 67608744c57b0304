/// @file
/// The host's wizard object as a page sees it.
#pragma once

#include <plovix/base/requirements.h>

namespace plovix {

/// Implemented by the wizard, handed to a page with IWizardPage_Initialize and kept by it until
/// IWizardPage_Terminate. Both members may be called while the wizard is calling the page.
class WizardHost {
 public:
  virtual ~WizardHost() = default;
  /// Re-reads and redraws the buttons; `can_continue` says whether the page's content allows moving on.
  /// Called by IWizardPage_Initialize and after the user's changes. A page that has nothing to say does not
  /// call it: until then moving on is allowed.
  virtual void Refresh(bool can_continue) = 0;
  /// Advances exactly as if Next had been pressed. The calling page may have been replaced when it
  /// returns, but lives until its event procedure has ended. Called on a double click on a choice.
  virtual void MoveNext() = 0;
};

}  // namespace plovix
