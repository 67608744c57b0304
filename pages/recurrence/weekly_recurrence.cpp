#include "weekly_recurrence.h"

#include <plovix/framework/text_rules.h>

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

// Boxes are only ever checked here: a page is loaded once, with every box unchecked.
Outcome WeeklyRecurrence::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    TakePattern(run);
    SetUnsetToOne(run, &WeeklyPattern::EveryNWeeks, &WeeklyPattern::SetEveryNWeeks);
    run([&] { txtWeeks.SetText(std::to_string(Set(Pattern)->EveryNWeeks())); });
    std::int32_t index = 0;
    for (CheckBox* day : days_) {
      ++index;
      if (run.If([&] { return Set(Pattern)->Day(index); })) run([&] { day->SetValue(1); });
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

// That no day is checked is not said here: the wizard's buttons hold the user back.
bool WeeklyRecurrence::Validate() {
  bool answer = false;
  Procedure("Validate", [&](Statements& run) {
    answer = Accepts(run, txtWeeks, kWeeksNotNumericText, kWeeksNotPositiveText);
  });
  return answer;
}

Outcome WeeklyRecurrence::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    Repair(run, ValidateWeeks(), txtWeeks);
    run([&] { Set(Pattern)->SetEveryNWeeks(Integer(txtWeeks)); });
    std::int32_t index = 0;
    for (const CheckBox* day : days_) {
      ++index;
      run([&] { Set(Pattern)->SetDay(index, day->Checked()); });
    }
    StorePattern(run);
  });
}

std::optional<bool> WeeklyRecurrence::CanContinue() {
  return !Trimmed(txtWeeks.Text()).empty() && IsOneDayChecked();
}

}  // namespace plovix
