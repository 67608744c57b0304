// The host's wizard object as a page sees it.
#pragma once

namespace plovix {

class WizardHost {
 public:
  virtual ~WizardHost() = default;
  // Re-reads and redraws the buttons; `can_continue` says whether the page's content allows moving on.
  virtual void Refresh(bool can_continue) = 0;
  // Advances exactly as if Next had been pressed. The calling page may have been replaced when it
  // returns, but lives until its event procedure has ended.
  virtual void MoveNext() = 0;
};

}  // namespace plovix
