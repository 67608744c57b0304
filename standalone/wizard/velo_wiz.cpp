#include "velo_wiz.h"

#include <plovix/base/failure.h>
#include <plovix/base/raised.h>
#include <plovix/base/utf8.h>
#include <plovix/standalone/objects/call_gate.h>
#include <plovix/standalone/tasks/category_column.h>

#include <utility>

namespace plovix {
namespace {

TaskRecord AsOpened(const HostState& state, TaskRecord task) {
  if (task.id == 0 && state.NewTasksUseTags()) task.uses_language_tags = true;
  return task;
}

}  // namespace

// The pages' reference to the wizard: it stays behind, closed, when the wizard is gone.
class VeloWiz::Door final : public WizardHost {
 public:
  explicit Door(VeloWiz* wizard) : wizard_(wizard) {}
  void Shut() noexcept { wizard_ = nullptr; }
  void Refresh(bool can_continue) override {
    Called("WizardHost.Refresh");
    if (wizard_ != nullptr) wizard_->Refresh(can_continue);
  }
  void MoveNext() override {
    Called("WizardHost.MoveNext");
    if (wizard_ != nullptr) wizard_->Next();
  }

 private:
  VeloWiz* wizard_;
};

VeloWiz::VeloWiz(WizardParts parts, const TaskRecord& task, const std::map<std::string, Value>& entries)
    : parts_(std::move(parts)),
      original_(AsOpened(parts_.state, task)),
      task_(MakeTask(parts_.state, original_)),
      store_(std::make_shared<StoreObject>()),
      door_(std::make_shared<Door>(this)) {
  store_->values = entries;
  store_->values[store_key::kAutoTask] = ObjectRef(task_);
}

VeloWiz::~VeloWiz() {
  door_->Shut();
  if (current_.page) current_.page->IWizardPage_Terminate();
}

// Does a button's work unless the button is disabled or another button's work is in progress.
template <class Work>
bool VeloWiz::Press(bool enabled, Work work) {
  if (busy_ || !enabled) return false;
  {
    const Raised busy(busy_);
    work();
  }
  AskNextPage();
  return true;
}

bool VeloWiz::Open(const std::string& identifier) {
  Press(!IsOpen(), [&] { Show(identifier); });
  return IsOpen();
}

// In an event of the page, as MoveNext, the answer may be older than what the event has changed.
bool VeloWiz::Next() {
  if (depth_ > 0 && !busy_) UpdateNext();
  return Press(Buttons().next, [&] {
    if (!MayLeave(ChangeDirection::kNext)) return;
    UpdateNext();  // asked again, because the page has just saved
    // If no page follows after all, the button becomes Finish.
    if (!current_.next || current_.next->empty()) return;
    const std::string former = current_.identifier;
    const std::string target = *current_.next;
    if (Show(target)) history_.push_back(former);
  });
}

bool VeloWiz::Back() {
  return Press(Buttons().back, [&] {
    if (!MayLeave(ChangeDirection::kBack)) return;
    const std::string target = history_.back();
    if (Show(target)) history_.pop_back();
  });
}

bool VeloWiz::Finish() {
  return Press(Buttons().finish, [&] {
    if (MayLeave(ChangeDirection::kFinish) && Save()) Close(WizardEnd::kFinished);
  });
}

bool VeloWiz::Cancel() {
  return Press(IsOpen(), [&] {
    if (MayLeave(ChangeDirection::kCancel)) Close(WizardEnd::kCancelled);
  });
}

bool VeloWiz::AskToLeave(std::int32_t direction) {
  return IsOpen() && MayLeave(static_cast<ChangeDirection>(direction));
}

// Once for whatever a verb or a button did: it ends with this.
void VeloWiz::AskNextPage() {
  if (busy_ || depth_ > 0) return;
  UpdateNext();
  if (view_ != nullptr && IsOpen()) view_->ButtonsChanged();
}

WizardButtons VeloWiz::Buttons() const {
  if (!IsOpen()) return {};
  const bool forward = current_.can_continue && current_.next;
  return {!history_.empty(), forward && !current_.next->empty(), forward && current_.next->empty(), true};
}

bool VeloWiz::HasChanges() const {
  return touched_ || (IsOpen() && current_.page->Controls().Touched()) || task_->Record() != original_;
}

std::shared_ptr<Form> VeloWiz::Controls() const {
  if (!current_.page) return nullptr;
  return {current_.page, &current_.page->Controls()};
}

void VeloWiz::EventEnds() {
  if (--depth_ > 0) return;
  retired_.clear();
  AskNextPage();
}

void VeloWiz::EventFailed(const Failure& failure, std::string_view procedure) {
  Report(failure, procedure);
}

void VeloWiz::Refresh(bool can_continue) {
  current_.can_continue = can_continue;
  ++current_.refreshes;
  AskNextPage();
}

// Makes the identified page the current one; on failure the former page stays current.
bool VeloWiz::Show(const std::string& identifier) {
  Shown former = std::exchange(current_, {});
  bool shown = false;
  do {
    current_ = {identifier, parts_.registry.Create(identifier)};
    if (!current_.page) Tell("wizard.noPage", Readable(identifier));
  } while (current_.page && Initialize(shown));
  if (!shown) {
    current_ = std::move(former);
    return false;
  }
  if (former.page) {
    former.page->IWizardPage_Terminate();
    touched_ = touched_ || former.page->Controls().Touched();
    retired_.push_back(std::move(former.page));
  }
  UpdateNext();
  if (view_ != nullptr) view_->PageShown();
  user_.Show(current_.page->Controls());
  return true;
}

// Loads the new current page; true to try again with another one. If the user continues after a failure, the
// page is shown as far as it was loaded.
bool VeloWiz::Initialize(bool& shown) {
  const auto page = current_.page;
  const auto answer = Guarded("IWizardPage_Initialize", [&] {
    EmbedControls(page->Controls());
    page->IWizardPage_Initialize(door_, store_);
  });
  if (answer && current_.refreshes == 0) current_.can_continue = false;
  shown = !answer || *answer == ReportAction::kContinue;
  if (!shown) {
    page->IWizardPage_Terminate();
    return answer == ReportAction::kRetry;
  }
  Guarded("IWizardPage_Title", [&] { current_.title = page->IWizardPage_Title(); });
  Guarded("IWizardPage_Description", [&] { current_.description = page->IWizardPage_Description(); });
  return false;
}

void VeloWiz::EmbedControls(Form& form) {
  for (std::size_t i = 0; i < form.Count(); ++i) {
    auto* slot = dynamic_cast<HostSlot*>(&form.At(i));
    if (slot != nullptr) slot->Embed(parts_.make_control(slot->RegisteredName()));
  }
}

// Asks the page for the next page. A failure disables Next and Finish; it is reported when it first occurs,
// not again for every key typed while it lasts.
void VeloWiz::UpdateNext() {
  if (!IsOpen()) return;
  std::string next;
  const auto failure = FailureOf([&] { current_.page->IWizardPage_GetNextPage(next); });
  current_.next = failure ? std::nullopt : std::optional(next);
  const bool known = std::exchange(current_.next_failed, failure.has_value());
  if (failure && !known) Report(*failure, "IWizardPage_GetNextPage");
}

bool VeloWiz::MayLeave(ChangeDirection direction) {
  bool answer = false;
  Guarded("IWizardPage_CanChangePage", [&] { answer = current_.page->IWizardPage_CanChangePage(direction); });
  return answer;
}

// Passes the working copy to the storage. Whatever goes wrong, the wizard stays open with all its data.
bool VeloWiz::Save() {
  TaskRecord record = task_->Record();
  if (IsNoCategory(record.categories)) record.categories.clear();
  while (true) {
    bool conflict = false;
    const auto failure = FailureOf([&] {
      const DateTime now = parts_.state.Now();
      StartSchedule(record, now);
      try {
        saved_ = parts_.storage.Save(record, now);
      } catch (const TaskConflict&) {
        conflict = true;
        throw;
      }
    });
    if (!failure) return true;
    if (!conflict) {
      Tell("wizard.saveFailed", failure->Description());
      return false;
    }
    const std::string question = parts_.state.texts.Host("wizard.saveConflict");
    if (parts_.state.dialogs->MessageBox(question, message_box::kYesNoQuestion, parts_.state.title) !=
        message_box::kYes) {
      return false;
    }
    record.id = record.version = 0;  // the user's version becomes a separate task
  }
}

void VeloWiz::Close(WizardEnd end) {
  end_ = end;
  current_.page->IWizardPage_Terminate();
  retired_.push_back(std::move(current_.page));
  current_ = {};
  if (view_ != nullptr) view_->Closed(end);
  if (depth_ == 0) retired_.clear();
}

// Reports a failure that no procedure of the page has handled, under the name of the operation or event.
ReportAction VeloWiz::Report(const Failure& failure, std::string_view procedure) {
  const auto page = current_.page ? current_.page->PageName() : std::string_view{};
  return parts_.state.dialogs->Report({failure.Number(), failure.Description(), std::string(kModule),
                                       std::string(page), std::string(procedure), 0});
}

// Runs a call to the page; after a failure returns the reporter's answer.
template <class Call>
std::optional<ReportAction> VeloWiz::Guarded(std::string_view procedure, Call call) {
  const auto failure = FailureOf(call);
  return failure ? std::optional(Report(*failure, procedure)) : std::nullopt;
}

void VeloWiz::Tell(std::string_view text_key, const std::string& parameter) {
  const auto& state = parts_.state;
  state.dialogs->MessageBox(state.texts.Host(text_key, {parameter}), message_box::kOkWarning, state.title);
}

}  // namespace plovix
