// The base classes of the pages: PageBase owns the controls and implements what is the same everywhere;
// CommonPage adds the common lifecycle, leaving a page and the can-continue flag.
#pragma once

#include <plovix/controls/form.h>
#include <plovix/host/auto_task.h>
#include <plovix/host/services.h>

#include <optional>
#include <string>
#include <vector>

#include "statements.h"
#include "unread.h"
#include "wizard_page.h"

namespace plovix {

class PageBase : public WizardPage {
 public:
  explicit PageBase(const DesignView& design) : form_(design) {}
  [[nodiscard]] Form& Controls() noexcept final { return form_; }

  std::string IWizardPage_Title() final;
  std::string IWizardPage_Description() final;
  void IWizardPage_Terminate() override;
  bool IWizardPage_BackEnabled() final { return false; }
  bool IWizardPage_CancelEnabled() final { return false; }
  bool IWizardPage_FinishEnabled() final { return false; }
  bool IWizardPage_NextEnabled() final { return false; }
  void IWizardPage_GetMinimumSize(int& /*width*/, int& /*height*/) final {}

 protected:
  // Runs a named procedure with the page's error handler. Any call of the host may end the page, so the store
  // is kept until the procedure has ended.
  template <class Body>
  Outcome Procedure(std::string_view name, Body&& body) {
    const Working working(*this);
    return RunProcedure(PageName(), name, std::forward<Body>(body));
  }
  // A procedure with an answer: the result of `body`; false if any of its statements failed, whatever was
  // answered.
  template <class Body>
  bool Answer(std::string_view name, Body&& body) {
    bool answer = false;
    Procedure(name, [&](Statements& run) { answer = body(run) && run.Skipped() == 0; });
    return answer;
  }

  // Loads a control, or a member without a control, as one statement of the calling procedure; false if it
  // was skipped. In that case, and if loading never got this far, Save leaves the stored value alone until
  // the user has given another one.
  template <class Thing, class Statement>
  bool Load(Statements& run, const Thing& thing, Statement&& statement,
            std::source_location where = std::source_location::current()) {
    unread_.Add(thing);
    if (!run(std::forward<Statement>(statement), where)) return false;
    unread_.Remove(&thing);
    return true;
  }
  // True if it was written.
  template <class Thing, class Statement>
  bool Save(Statements& run, const Thing& thing, Statement&& statement,
            std::source_location where = std::source_location::current()) {
    return !IsUnread(thing) && run(std::forward<Statement>(statement), where);
  }
  template <class Thing>
  [[nodiscard]] bool IsUnread(const Thing& thing) const {
    return unread_.Has(&thing);
  }
  template <class Thing>
  void MarkUnread(const Thing& thing) {
    unread_.Add(thing);
  }

  // Resets the page at the start of Initialize: keeps the references, has no task, selects no option and has
  // read nothing.
  void Begin(Ref<WizardHost> host, Ref<ValueStore> store);
  // Sets the captions of the controls; lets failures through.
  void TranslateCaptions();

  // Text `id` of the pages' module.
  [[nodiscard]] static std::string GetString(int id, const std::vector<std::string>& parameters = {});
  [[nodiscard]] static Ref<HostApplication> Application() { return Services().Application(); }
  // Shows the host's message box with a text of the pages and the application's title; returns the user's
  // answer.
  static int MsgBox(int text_id, int buttons, const std::vector<std::string>& parameters = {});

  Ref<WizardHost> Wizard;
  Ref<ValueStore> Store;
  Ref<AutoTask> Task;

 private:
  class Working {
   public:
    explicit Working(PageBase& page) : page_(page) { ++page_.working_; }
    ~Working() { page_.WorkEnds(); }
    Working(const Working&) = delete;
    Working& operator=(const Working&) = delete;

   private:
    PageBase& page_;
  };
  void WorkEnds();

  Form form_;
  Unread unread_;
  int working_ = 0;  // number of procedures being run, nested ones included
  bool ended_ = false;
};

// The lifecycle that every page but the first follows; a page overrides the private procedures.
class CommonPage : public PageBase {
 public:
  using PageBase::PageBase;
  void IWizardPage_Initialize(Ref<WizardHost> host, Ref<ValueStore> store) final;
  bool IWizardPage_CanChangePage(ChangeDirection direction) final;

  // Pushes the can-continue flag to the host; does nothing before Initialize and after Terminate.
  Outcome RefreshWizard();

 protected:
  // Gets the task from the store if there is one, as statements of the calling procedure.
  void TakeTask(RunAt run);
  // Gives the option the focus and selects it.
  static void Choose(RunAt run, OptionButton& option);

 private:
  // Page-specific preparation, between translating and refreshing.
  virtual void Prepare() { RetrieveValues(); }
  virtual Outcome RetrieveValues() = 0;
  // What Back does before the page is left; pages save without validating unless they say otherwise.
  virtual Outcome SaveOnBack() { return SaveValues(); }
  // Checks the controls on Next and Finish and tells the user what is wrong; false if the procedure was left.
  virtual bool Validate() { return true; }
  virtual Outcome SaveValues() = 0;
  // Whether the page's content allows moving on; nothing if the host is not to be called.
  virtual std::optional<bool> CanContinue() { return true; }
};

}  // namespace plovix
