#include "monthly_recurrence.h"

#include <plovix/base/raised.h>
#include <plovix/base/text_rules.h>

#include "day_texts.h"

namespace plovix {
namespace {

constexpr int kDayOutOfRangeText = 55;
constexpr int kDayMissingInMonthsText = 56;
constexpr int kMonthsNotNumericText = 57;
constexpr int kMonthsNotPositiveText = 58;
constexpr std::int32_t kLongestMonth = 31;
constexpr std::int32_t kShortestMonth = 28;

}  // namespace

MonthlyRecurrence::MonthlyRecurrence() {
  optSpecificDay.On(Event::kClick,
                    [this] { RepairNonNumeric("optSpecificDay_Click", {&txtRelativeDayMonth}); });
  optRelativeDay.On(Event::kClick, [this] {
    RepairNonNumeric("optRelativeDay_Click", {&txtDay, &txtSpecificDayMonth});
  });
  txtDay.On(Event::kChange, [this] { EditChooses("txtDay_Change", optSpecificDay); });
  txtSpecificDayMonth.On(Event::kChange,
                         [this] { EditChooses("txtSpecificDayMonth_Change", optSpecificDay); });
  cboRelativeDay.On(Event::kClick, [this] { EditChooses("cboRelativeDay_Click", optRelativeDay); });
  cboDayOfWeek.On(Event::kClick, [this] { EditChooses("cboDayOfWeek_Click", optRelativeDay); });
  txtRelativeDayMonth.On(Event::kChange,
                         [this] { EditChooses("txtRelativeDayMonth_Change", optRelativeDay); });
}

void MonthlyRecurrence::Prepare() {
  InitControls();
  RetrieveValues();
}

Outcome MonthlyRecurrence::InitControls() {
  return Procedure("InitControls", [&](Statements& run) {
    AddTexts(run, cboRelativeDay, kFirstOrdinalText, kLastOrdinalText);
    AddTexts(run, cboDayOfWeek, kFirstDayText, kLastDayText);
  });
}

Outcome MonthlyRecurrence::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    TakePattern(run);
    const Raised guard(updating);
    LoadLine(run, optRelativeDay, optSpecificDay, [&] { return Pattern->UseRelativeDay(); });
    SetUnsetToOne(run, &MonthlyPattern::DayOfMonth, &MonthlyPattern::SetDayOfMonth);
    SetUnsetToOne(run, &MonthlyPattern::EveryNMonths, &MonthlyPattern::SetEveryNMonths);
    SetUnsetToOne(run, &MonthlyPattern::RelativeDayOfWeek, &MonthlyPattern::SetRelativeDayOfWeek);
    const auto months = [&] { return std::to_string(Pattern->EveryNMonths()); };
    Load(run, txtDay, [&] { txtDay.SetText(std::to_string(Pattern->DayOfMonth())); });
    Load(run, txtSpecificDayMonth, [&] { txtSpecificDayMonth.SetText(months()); });
    Load(run, txtRelativeDayMonth, [&] { txtRelativeDayMonth.SetText(months()); });
    Load(run, cboRelativeDay, [&] { SelectEntry(cboRelativeDay, Pattern->RelativeWeek()); });
    Load(run, cboDayOfWeek,
         [&] { SelectEntry(cboDayOfWeek, std::int64_t{Pattern->RelativeDayOfWeek()} - 1); });
  });
}

std::optional<bool> MonthlyRecurrence::ValidateSpecificDay() {
  return ValidateNumber("ValidateSpecificDay", txtDay, kLongestMonth);
}

std::optional<bool> MonthlyRecurrence::ValidateSpecificDayMonth() {
  return ValidateNumber("ValidateSpecificDayMonth", txtSpecificDayMonth);
}

std::optional<bool> MonthlyRecurrence::ValidateRelativeDayMonth() {
  return ValidateNumber("ValidateRelativeDayMonth", txtRelativeDayMonth);
}

// Asymmetric on purpose: a specific day is checked without its interval, which saving repairs. With a
// relative day, the interval of the other line is checked, too, and first.
bool MonthlyRecurrence::Validate() {
  return Answer("Validate", [&](Statements& run) {
    if (optSpecificDay.Selected()) {
      if (!Accepts(run, txtDay, kDayNotNumericText, kDayOutOfRangeText, kLongestMonth)) return false;
      const auto day = run.Get([&] { return Integer(txtDay); });
      if (day > kShortestMonth) {
        int reply = message_box::kCancel;
        run([&] {
          reply = MsgBox(kDayMissingInMonthsText, message_box::kOkCancelWarning, {std::to_string(day)});
        });
        if (reply == message_box::kCancel) {
          SendTo(run, txtDay);
          return false;
        }
      }
    }
    return !optRelativeDay.Selected() ||
           (Accepts(run, txtSpecificDayMonth, kMonthsNotNumericText, kMonthsNotPositiveText) &&
            Accepts(run, txtRelativeDayMonth, kMonthsNotNumericText, kMonthsNotPositiveText));
  });
}

Outcome MonthlyRecurrence::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    Repair(run, ValidateSpecificDay(), txtDay);
    Repair(run, ValidateSpecificDayMonth(), txtSpecificDayMonth);
    Repair(run, ValidateRelativeDayMonth(), txtRelativeDayMonth);
    Save(run, optRelativeDay, [&] { Pattern->SetUseRelativeDay(optRelativeDay.Selected()); });
    if (const auto relative = run.Read([&] { return Pattern->UseRelativeDay(); })) {
      const TextBox& months = *relative ? txtRelativeDayMonth : txtSpecificDayMonth;
      Save(run, months, [&] { Pattern->SetEveryNMonths(Integer(months)); });
    }
    Save(run, txtDay, [&] { Pattern->SetDayOfMonth(Integer(txtDay)); });
    Save(run, cboRelativeDay, [&] { Pattern->SetRelativeWeek(cboRelativeDay.Index()); });
    Save(run, cboDayOfWeek, [&] { Pattern->SetRelativeDayOfWeek(cboDayOfWeek.Index() + 1); });
    StorePattern(run);
  });
}

std::optional<bool> MonthlyRecurrence::CanContinue() {
  if (optSpecificDay.Selected()) {
    return !Trimmed(txtDay.Text()).empty() && !Trimmed(txtSpecificDayMonth.Text()).empty();
  }
  if (optRelativeDay.Selected()) return !Trimmed(txtRelativeDayMonth.Text()).empty();
  return std::nullopt;
}

}  // namespace plovix
