#include "weekly_recurrence.h"

#include <plovix/base/text_rules.h>

#include <algorithm>

namespace plovix {
namespace {

constexpr int kWeeksNotNumericText = 95;
constexpr int kWeeksNotPositiveText = 96;

}  // namespace

WeeklyRecurrence::WeeklyRecurrence() {
  txtWeeks.On(Event::kChange, [this] { RefreshWizard(); });
  for (CheckBox* day : days_) day->On(Event::kClick, [this] { RefreshWizard(); });
}

// Boxes are only checked here, never unchecked: a page is loaded once, with every box unchecked.
Outcome WeeklyRecurrence::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    TakePattern(run);
    SetUnsetToOne(run, &WeeklyPattern::EveryNWeeks, &WeeklyPattern::SetEveryNWeeks);
    Load(run, txtWeeks, [&] { txtWeeks.SetText(std::to_string(Pattern->EveryNWeeks())); });
    std::int32_t index = 0;
    for (CheckBox* day : days_) {
      ++index;
      Load(run, *day, [&] { day->SetValue(Pattern->Day(index) ? 1 : day->Value()); });
    }
  });
}

Outcome WeeklyRecurrence::SaveOnBack() {
  const Outcome repaired = RepairNonNumeric("IWizardPage_CanChangePage", {&txtWeeks});
  return repaired == Outcome::kLeft ? repaired : SaveValues();
}

std::optional<bool> WeeklyRecurrence::ValidateWeeks() {
  return ValidateNumber("ValidateWeeks", txtWeeks);
}

bool WeeklyRecurrence::IsOneDayChecked() {
  return std::ranges::any_of(days_, &CheckBox::Checked);
}

// There is no message if no day is checked: the wizard's disabled buttons hold the user back.
bool WeeklyRecurrence::Validate() {
  return Answer("Validate", [&](Statements& run) {
    return Accepts(run, txtWeeks, kWeeksNotNumericText, kWeeksNotPositiveText);
  });
}

Outcome WeeklyRecurrence::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    Repair(run, ValidateWeeks(), txtWeeks);
    Save(run, txtWeeks, [&] { Pattern->SetEveryNWeeks(Integer(txtWeeks)); });
    std::int32_t index = 0;
    for (const CheckBox* day : days_) {
      ++index;
      Save(run, *day, [&] { Pattern->SetDay(index, day->Checked()); });
    }
    StorePattern(run);
  });
}

std::optional<bool> WeeklyRecurrence::CanContinue() {
  return !Trimmed(txtWeeks.Text()).empty() && IsOneDayChecked();
}

}  // namespace plovix
