/// @file
/// The contract between a wizard and its pages: eleven operations in vtable order. Every call comes on the
/// user-interface thread.
#pragma once

#include <plovix/controls/form.h>
#include <plovix/host/value_store.h>
#include <plovix/host/wizard_host.h>

#include <cstdint>
#include <memory>
#include <string>

namespace plovix {

/// The direction in which a user leaves a page; any 32-bit code may be passed.
enum class ChangeDirection : std::int32_t {
  kNext = 0,    ///< checks and saves
  kBack = 1,    ///< saves unchecked, so that partial input is kept; Details saves nothing
  kFinish = 2,  ///< checks and saves; refused by the first page
  kCancel = 3   ///< saves nothing
};

/// What a wizard calls, in this order: Initialize once; the queries any number of times; CanChangePage
/// whenever the user tries to leave; Terminate when the page has been left, or could not be shown. After a
/// failed Initialize only Terminate is called.
class IWizardPage {
 public:
  /// @{
  /// Title and description of the wizard, the same on every page: texts 4 and 5. Both let failures through.
  [[nodiscard]] virtual std::string IWizardPage_Title() = 0;
  [[nodiscard]] virtual std::string IWizardPage_Description() = 0;
  /// @}
  /// Keeps both references until Terminate, translates the captions, loads the values and pushes the
  /// can-continue flag through `host`. The store holds the task; the page's slots have been filled before.
  virtual void IWizardPage_Initialize(Ref<WizardHost> host, Ref<ValueStore> store) = 0;
  /// Drops both references; saves nothing.
  virtual void IWizardPage_Terminate() = 0;
  /// Writes the identifier of the next page, empty if this page ends the wizard. May leave `next` as the
  /// caller passed it. Computed from the task and the controls at each call, so a call after a successful
  /// CanChangePage sees what was saved. Lets failures through.
  virtual void IWizardPage_GetNextPage(std::string& next) = 0;
  /// Whether the wizard may leave the page in that direction; validates and saves before it returns. Also
  /// false if a failure was answered with kLeave: the user stays on the page with what was typed.
  [[nodiscard]] virtual bool IWizardPage_CanChangePage(ChangeDirection direction) = 0;
  /// @{
  /// False on every page: the button state is pushed through WizardHost::Refresh.
  [[nodiscard]] virtual bool IWizardPage_BackEnabled() = 0;
  [[nodiscard]] virtual bool IWizardPage_CancelEnabled() = 0;
  [[nodiscard]] virtual bool IWizardPage_FinishEnabled() = 0;
  [[nodiscard]] virtual bool IWizardPage_NextEnabled() = 0;
  /// @}
  /// Leaves both values as the caller passed them: the host keeps its own size.
  virtual void IWizardPage_GetMinimumSize(int& width, int& height) = 0;

  // Declared last, so that the operations come first in the vtable.
  virtual ~IWizardPage() = default;
};

/// A page with the controls that it owns; factories create it and hosts keep it.
class WizardPage : public IWizardPage {
 public:
  /// The page's controls, for a surface to draw; they live as long as the page.
  [[nodiscard]] virtual Form& Controls() noexcept = 0;
  /// "Details"
  [[nodiscard]] std::string_view PageName() noexcept { return Controls().Design().page; }
};

}  // namespace plovix
