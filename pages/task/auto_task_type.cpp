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
    const auto move_on = [this] { Set(Wizard)->MoveNext(); };
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

void AutoTaskType::IWizardPage_Initialize(std::shared_ptr<WizardHost> host,
                                          std::shared_ptr<ValueStore> store) {
  Keep(std::move(host), std::move(store));
  TranslateCaptions();
  LoadChoice();
  Set(Wizard)->Refresh(true);
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
  Task = ObjectFrom<AutoTask>(Set(Store)->GetValue(store_key::kAutoTask, {}));
  const auto show = [](OptionButton& option) {
    option.Select();
    option.SetFocus();
  };
  switch (Set(Task)->RecordMode()) {
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

bool AutoTaskType::SaveValues() {
  bool answer = false;
  Procedure("SaveValues", [&](Statements& run) {
    const std::int16_t mode = ChosenMode();
    const bool no_actions = run.If([&] { return Set(Set(Task)->Actions())->Count() == 0; });
    if (!no_actions && !run.If([&] { return Set(Task)->RecordMode() == mode; })) {
      int reply = message_box::kCancel;
      run([&] { reply = MsgBox(kActionsWillBeLostText, message_box::kOkCancelQuestion); });
      if (reply != message_box::kOk) return;
      run([&] { Set(Task)->SetActions(Set(Services().Factory())->NewActionList()); });
    }
    run([&] { Set(Task)->SetRecordMode(mode); });
    if (mode == record_mode::kNoData) {
      run([&] { Set(Task)->SetDataObjectName(""); });
      run([&] { Set(Task)->SetDataObjectCaption(""); });
    }
    if (mode == record_mode::kSingleRecord) run([&] { Set(Task)->SetAllowAutomationManager(false); });
    answer = true;
  });
  return answer;
}

}  // namespace plovix
