#include "daily_recurrence.h"

#include <plovix/base/text_rules.h>

namespace plovix {
namespace {

constexpr int kDaysNotNumericText = 17;
constexpr int kDaysNotPositiveText = 18;

}  // namespace

DailyRecurrence::DailyRecurrence() {
  txtDays.On(Event::kChange, [this] { RefreshWizard(); });
}

Outcome DailyRecurrence::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    TakePattern(run);
    Load(run, chkWeekdays, [&] { chkWeekdays.SetValue(Pattern->WeekdaysOnly() ? 1 : 0); });
    SetUnsetToOne(run, &DailyPattern::EveryNDays, &DailyPattern::SetEveryNDays);
    Load(run, txtDays, [&] { txtDays.SetText(std::to_string(Pattern->EveryNDays())); });
  });
}

std::optional<bool> DailyRecurrence::ValidateDays() {
  return ValidateNumber("ValidateDays", txtDays);
}

bool DailyRecurrence::Validate() {
  return Answer("Validate", [&](Statements& run) {
    return Accepts(run, txtDays, kDaysNotNumericText, kDaysNotPositiveText);
  });
}

Outcome DailyRecurrence::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    Repair(run, ValidateDays(), txtDays);
    Save(run, chkWeekdays, [&] { Pattern->SetWeekdaysOnly(chkWeekdays.Checked()); });
    Save(run, txtDays, [&] { Pattern->SetEveryNDays(Integer(txtDays)); });
    StorePattern(run);
  });
}

std::optional<bool> DailyRecurrence::CanContinue() {
  return !Trimmed(txtDays.Text()).empty();
}

}  // namespace plovix
