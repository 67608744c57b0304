#include "yearly_recurrence.h"

#include <plovix/base/raised.h>
#include <plovix/base/text_rules.h>

#include <charconv>
#include <chrono>

#include "day_texts.h"

namespace plovix {
namespace {

constexpr int kFirstMonthText = 99;  // January; twelve in a row: the position plus one is Month
constexpr int kLastMonthText = 110;
constexpr int kNoSuchDateText = 112;

// One or two digits, with optional blanks around them; 0, which is not a day, for any other text.
unsigned DayNumber(std::string_view text) {
  const std::string_view digits = Trimmed(text);
  unsigned day = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), day);
  const bool whole = error == std::errc{} && end == digits.data() + digits.size() && digits.size() <= 2;
  return whole ? day : 0;
}

}  // namespace

// Nothing to do when optSpecificDay is chosen: the other line has no field to repair.
YearlyRecurrence::YearlyRecurrence() {
  optRelativeDay.On(Event::kClick, [this] { RepairNonNumeric("optRelativeDay_Click", {&txtSpecificDay}); });
  cboSpecificDayMonth.On(Event::kClick, [this] { EditChooses("cboSpecificDayMonth_Click", optSpecificDay); });
  txtSpecificDay.On(Event::kChange, [this] { EditChooses("txtSpecificDay_Change", optSpecificDay); });
  cboRelativeDay.On(Event::kClick, [this] { EditChooses("cboRelativeDay_Click", optRelativeDay); });
  cboDayOfWeek.On(Event::kClick, [this] { EditChooses("cboDayOfWeek_Click", optRelativeDay); });
  cboRelativeDayMonth.On(Event::kClick, [this] { EditChooses("cboRelativeDayMonth_Click", optRelativeDay); });
}

void YearlyRecurrence::Prepare() {
  InitControls();
  RetrieveValues();
}

Outcome YearlyRecurrence::InitControls() {
  return Procedure("InitControls", [&](Statements& run) {
    AddTexts(run, cboRelativeDay, kFirstOrdinalText, kLastOrdinalText);
    AddTexts(run, cboDayOfWeek, kFirstDayText, kLastDayText);
    AddTexts(run, cboSpecificDayMonth, kFirstMonthText, kLastMonthText);
    AddTexts(run, cboRelativeDayMonth, kFirstMonthText, kLastMonthText);
  });
}

Outcome YearlyRecurrence::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    TakePattern(run);
    const Raised guard(updating);
    LoadLine(run, optRelativeDay, optSpecificDay, [&] { return Pattern->UseRelativeDay(); });
    SetUnsetToOne(run, &YearlyPattern::DayOfMonth, &YearlyPattern::SetDayOfMonth);
    SetUnsetToOne(run, &YearlyPattern::Month, &YearlyPattern::SetMonth);
    SetUnsetToOne(run, &YearlyPattern::RelativeDayOfWeek, &YearlyPattern::SetRelativeDayOfWeek);
    Load(run, txtSpecificDay, [&] { txtSpecificDay.SetText(std::to_string(Pattern->DayOfMonth())); });
    for (ComboBox* list : {&cboSpecificDayMonth, &cboRelativeDayMonth})
      Load(run, *list, [&] { SelectEntry(*list, std::int64_t{Pattern->Month()} - 1); });
    Load(run, cboRelativeDay, [&] { SelectEntry(cboRelativeDay, Pattern->RelativeWeek()); });
    Load(run, cboDayOfWeek,
         [&] { SelectEntry(cboDayOfWeek, std::int64_t{Pattern->RelativeDayOfWeek()} - 1); });
  });
}

// The day is compared with the month's length in the current year, so 29 February passes only in leap years.
bool YearlyRecurrence::IsDateOfThisYear() const {
  using namespace std::chrono;
  const year_month_day today(floor<days>(Application()->Now()));
  const month chosen(static_cast<unsigned>(cboSpecificDayMonth.Index() + 1));
  return year_month_day(today.year(), chosen, day(DayNumber(txtSpecificDay.Text()))).ok();
}

std::optional<bool> YearlyRecurrence::ValidateSpecificDay() {
  std::optional<bool> answer;
  Procedure("ValidateSpecificDay", [&](Statements& run) {
    const bool fails = run.If([&] { return !Number(txtSpecificDay) || !IsDateOfThisYear(); });
    answer = !fails;
  });
  return answer;
}

// The date is checked whatever is selected: a relative day is refused while the other line is invalid.
bool YearlyRecurrence::Validate() {
  return Answer("Validate", [&](Statements& run) {
    if (run.If([&] { return !Number(txtSpecificDay); })) {
      Refuse(run, txtSpecificDay, kDayNotNumericText);
      return false;
    }
    if (run.If([&] { return !IsDateOfThisYear(); })) {
      Refuse(run, txtSpecificDay, kNoSuchDateText);
      return false;
    }
    return true;
  });
}

Outcome YearlyRecurrence::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    Repair(run, ValidateSpecificDay(), txtSpecificDay);
    Save(run, optRelativeDay, [&] { Pattern->SetUseRelativeDay(optRelativeDay.Selected()); });
    if (const auto relative = run.Read([&] { return Pattern->UseRelativeDay(); })) {
      const ComboBox& month = *relative ? cboRelativeDayMonth : cboSpecificDayMonth;
      Save(run, month, [&] { Pattern->SetMonth(month.Index() + 1); });
    }
    Save(run, txtSpecificDay, [&] { Pattern->SetDayOfMonth(Integer(txtSpecificDay)); });
    Save(run, cboRelativeDay, [&] { Pattern->SetRelativeWeek(cboRelativeDay.Index()); });
    Save(run, cboDayOfWeek, [&] { Pattern->SetRelativeDayOfWeek(cboDayOfWeek.Index() + 1); });
    StorePattern(run);
  });
}

std::optional<bool> YearlyRecurrence::CanContinue() {
  return !optSpecificDay.Selected() || !Trimmed(txtSpecificDay.Text()).empty();
}

}  // namespace plovix
