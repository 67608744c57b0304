#include "daily_recurrence.h"

#include <plovix/framework/text_rules.h>

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
    run([&] { chkWeekdays.SetValue(Set(Pattern)->WeekdaysOnly() ? 1 : 0); });
    SetUnsetToOne(run, &DailyPattern::EveryNDays, &DailyPattern::SetEveryNDays);
    run([&] { txtDays.SetText(std::to_string(Set(Pattern)->EveryNDays())); });
  });
}

std::optional<bool> DailyRecurrence::ValidateDays() {
  return ValidateNumber("ValidateDays", txtDays);
}

bool DailyRecurrence::Validate() {
  bool answer = false;
  Procedure("Validate", [&](Statements& run) {
    answer = Accepts(run, txtDays, kDaysNotNumericText, kDaysNotPositiveText);
  });
  return answer;
}

Outcome DailyRecurrence::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    Repair(run, ValidateDays(), txtDays);
    run([&] { Set(Pattern)->SetWeekdaysOnly(chkWeekdays.Checked()); });
    run([&] { Set(Pattern)->SetEveryNDays(Integer(txtDays)); });
    StorePattern(run);
  });
}

std::optional<bool> DailyRecurrence::CanContinue() {
  return !Trimmed(txtDays.Text()).empty();
}

}  // namespace plovix
