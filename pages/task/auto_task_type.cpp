#include "auto_task_type.h"

#include <plovix/framework/page_identifiers.h>

namespace plovix {
namespace {

constexpr int kActionsWillBeLostText = 117;

}  // namespace

AutoTaskType::AutoTaskType() {
  const auto choice = [this](OptionButton& option, Label& help) {
    const auto choose = [&option] {
      option.Select();
      option.SetFocus();
    };
    const auto move_on = [this] {
      const auto wizard = Wizard;  // held, because it may end the page
      wizard->MoveNext();
    };
    help.On(Event::kClick, choose);
    help.On(Event::kDblClick, [choose, move_on] {
      choose();
      move_on();
    });
    option.On(Event::kDblClick, move_on);
  };
  choice(optNoData, lblNoData);
  choice(optSingleRecord, lblSingleRecord);
  choice(optQueryResults, lblQueryResults);
}

void AutoTaskType::IWizardPage_Initialize(Ref<WizardHost> host, Ref<ValueStore> store) {
  Begin(host, store);
  TranslateCaptions();
  LoadChoice();
  host->Refresh(true);
}

void AutoTaskType::IWizardPage_GetNextPage(std::string& next) {
  next = page_identifier::kDetails;
}

bool AutoTaskType::IWizardPage_CanChangePage(ChangeDirection direction) {
  switch (direction) {
    case ChangeDirection::kNext:
      return SaveValues();
    case ChangeDirection::kBack:
    case ChangeDirection::kCancel:
      return true;
    case ChangeDirection::kFinish:
      break;  // the first page can never finish the wizard
  }
  return false;
}

// A mode outside the three selects nothing.
void AutoTaskType::LoadChoice() {
  Task = ObjectFrom<AutoTask>(Store->GetValue(store_key::kAutoTask, {}));
  const auto show = [](OptionButton& option) {
    option.Select();
    option.SetFocus();
  };
  switch (Task->RecordMode()) {
    case record_mode::kNoData:
      show(optNoData);
      break;
    case record_mode::kSingleRecord:
      show(optSingleRecord);
      break;
    case record_mode::kQueryResults:
      show(optQueryResults);
      break;
    default:
      break;
  }
}

std::int16_t AutoTaskType::ChosenMode() const {
  if (optSingleRecord.Selected()) return record_mode::kSingleRecord;
  if (optQueryResults.Selected()) return record_mode::kQueryResults;
  return record_mode::kNoData;
}

bool AutoTaskType::DropActions(Statements& run) {
  const auto reply = run.Read([&] { return MsgBox(kActionsWillBeLostText, message_box::kOkCancelQuestion); });
  return reply == message_box::kOk && run([&] { Task->SetActions(Services().Factory()->NewActionList()); });
}

bool AutoTaskType::SaveValues() {
  bool answer = false;
  Procedure("SaveValues", [&](Statements& run) {
    const std::int16_t mode = ChosenMode();
    if (!run.If([&] { return Task->Actions()->Count() == 0; })) {
      const auto former = run.Read([&] { return Task->RecordMode(); });
      if (!former) return;  // unknown whether the actions fit
      if (*former != mode && !DropActions(run)) return;
    }
    const bool written = run([&] { Task->SetRecordMode(mode); });  // else the rest would not fit
    if (written && mode == record_mode::kNoData) {
      run([&] { Task->SetDataObjectName(""); });
      run([&] { Task->SetDataObjectCaption(""); });
    }
    if (written && mode == record_mode::kSingleRecord) run([&] { Task->SetAllowAutomationManager(false); });
    answer = true;
  });
  return answer;
}

}  // namespace plovix
