/// @file
/// The stand-alone host's wizard without a toolkit: creates pages, remembers the way back, asks a page before
/// leaving it and decides which buttons are enabled. A window or a script shows it.
#pragma once

#include <plovix/component/page_registry.h>
#include <plovix/controls/user.h>
#include <plovix/standalone/objects/host_state.h>
#include <plovix/standalone/tasks/task_storage.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace plovix {

/// Which buttons are enabled. Next and Finish are never enabled together.
struct WizardButtons {
  /// @{
  /// Whether the button can be pressed.
  bool back = false, next = false, finish = false, cancel = false;
  /// @}
  bool operator==(const WizardButtons&) const = default;
};

/// How a wizard ended.
enum class WizardEnd {
  kFinished,  ///< the task is stored
  kCancelled  ///< nothing was stored
};

/// Implemented by what draws the wizard. Not owned by the wizard.
class WizardView {
 public:
  virtual ~WizardView() = default;
  /// The current page has changed; the former one lives at least until this returns.
  virtual void PageShown() = 0;
  /// Buttons or the can-continue flag may have changed.
  virtual void ButtonsChanged() = 0;
  /// Finish or Cancel succeeded; there is no current page any more. The wizard must not be deleted from
  /// within this call, only after the call of the wizard that led to it.
  virtual void Closed(WizardEnd end) = 0;
};

/// What a wizard works with; everything named here outlives it.
struct WizardParts {
  HostState& state;              ///< installed
  const PageRegistry& registry;  ///< holds the pages
  TaskStorage& storage;          ///< Finish saves there
  /// Creates the control to embed in a slot, by registered name; null for an unknown name.
  std::function<std::shared_ptr<HostControl>(std::string_view registered_name)> make_control;
};

/// One run of the wizard, from Open to Finish or Cancel. For the user-interface thread only.
class VeloWiz final : private UserListener {
 public:
  /// Edits a working copy of `task` and puts `entries` into the shared store. A new task (id 0) permanently
  /// uses language tags if the host now does so for new tasks.
  VeloWiz(WizardParts parts, const TaskRecord& task, const std::map<std::string, Value>& entries = {});
  ~VeloWiz() override;
  VeloWiz(const VeloWiz&) = delete;
  VeloWiz& operator=(const VeloWiz&) = delete;

  /// nullptr removes the view; a view that does not outlive the wizard must be removed.
  void SetView(WizardView* view) noexcept { view_ = view; }

  /// Shows the first page; false if it could not be shown (the user has been told).
  bool Open(const std::string& identifier);
  /// @{
  /// The four buttons. Each returns whether the button was enabled; which page is current afterwards depends
  /// on the page and the storage.
  bool Next();
  bool Back();
  bool Finish();
  bool Cancel();
  /// @}
  /// Asks the page whether it may be left, with a raw direction code, without moving; false without a page.
  bool AskToLeave(std::int32_t direction);
  /// Asks the page for its next page again: to be called after something outside the wizard has changed. From
  /// within an event it is put off to the event's end, as a page's Refresh is.
  void AskNextPage();

  /// Whether there is a current page.
  [[nodiscard]] bool IsOpen() const noexcept { return current_.page != nullptr; }
  /// How the wizard ended; nothing before the end.
  [[nodiscard]] std::optional<WizardEnd> End() const noexcept { return end_; }
  /// Follow from the way back, the page's flag and its next page, as it was when the last event ended.
  [[nodiscard]] WizardButtons Buttons() const;
  /// True if the working copy differs from the opened task, or the user has entered something.
  [[nodiscard]] bool HasChanges() const;

  /// @{
  /// The current page's; empty without one.
  [[nodiscard]] const std::string& Identifier() const noexcept { return current_.identifier; }
  [[nodiscard]] const std::string& Title() const noexcept { return current_.title; }
  [[nodiscard]] const std::string& Description() const noexcept { return current_.description; }
  /// @}
  /// The controls, for a surface; the reference keeps the page alive. Null without a page.
  [[nodiscard]] std::shared_ptr<Form> Controls() const;
  /// @{
  /// The last can-continue flag from the page, true before the first one, and the number of flags since it
  /// was shown. For a page that is shown although it failed to load, false until the first one.
  [[nodiscard]] bool CanContinue() const noexcept { return current_.can_continue; }
  [[nodiscard]] int Refreshes() const noexcept { return current_.refreshes; }
  /// @}
  /// The page's own answer; nothing if it failed.
  [[nodiscard]] const std::optional<std::string>& NextIdentifier() const noexcept { return current_.next; }

  /// The user's verbs, for the surface; the wizard is their listener.
  [[nodiscard]] plovix::User& User() noexcept { return user_; }
  /// @{
  /// The working copy and the shared store; the host may read them, and change them between calls.
  [[nodiscard]] TaskObject& Task() noexcept { return *task_; }
  [[nodiscard]] StoreObject& Store() noexcept { return *store_; }
  /// @}
  /// The task as stored by Finish; until then as it was opened.
  [[nodiscard]] const TaskRecord& Saved() const noexcept { return saved_ ? *saved_ : original_; }

 private:
  class Door;
  struct Shown {
    std::string identifier;
    std::shared_ptr<WizardPage> page;
    std::string title = {}, description = {};
    bool can_continue = true;  // until the page says otherwise; some never do
    int refreshes = 0;
    std::optional<std::string> next = {};
    bool next_failed = false;
  };

  void EventBegins() override { ++depth_; }
  void EventEnds() override;
  void EventFailed(const Failure& failure, std::string_view procedure) override;

  void Refresh(bool can_continue);
  template <class Work>
  bool Press(bool enabled, Work work);
  bool Show(const std::string& identifier);
  bool Initialize(bool& shown);
  void EmbedControls(Form& form);
  void UpdateNext();
  bool MayLeave(ChangeDirection direction);
  bool Save();
  void Close(WizardEnd end);
  ReportAction Report(const Failure& failure, std::string_view procedure);
  template <class Call>
  std::optional<ReportAction> Guarded(std::string_view procedure, Call call);
  void Tell(std::string_view text_key, const std::string& parameter);

  WizardParts parts_;
  WizardView* view_ = nullptr;
  TaskRecord original_;
  std::optional<TaskRecord> saved_;
  std::shared_ptr<TaskObject> task_;
  std::shared_ptr<StoreObject> store_;
  std::shared_ptr<Door> door_;
  plovix::User user_{*this};
  Shown current_;
  std::vector<std::string> history_;
  std::vector<std::shared_ptr<WizardPage>> retired_;
  std::optional<WizardEnd> end_;
  bool touched_ = false;  // by the user, on a page that has been left
  bool busy_ = false;     // while a button's work is in progress
  int depth_ = 0;         // number of events being handled, nested ones included
};

}  // namespace plovix
