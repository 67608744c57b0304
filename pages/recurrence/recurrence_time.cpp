#include "recurrence_time.h"

#include <plovix/base/raised.h>
#include <plovix/base/text_rules.h>
#include <plovix/framework/page_identifiers.h>

namespace plovix {
namespace {

constexpr int kMinutesNotNumericText = 88;
constexpr int kMinutesNotPositiveText = 89;
constexpr int kHoursNotNumericText = 90;
constexpr int kHoursNotPositiveText = 91;

}  // namespace

RecurrenceTime::RecurrenceTime() {
  optSpecificTime.On(Event::kClick, [this] {
    RepairNonNumeric("optSpecificTime_Click", {&txtMinutes, &txtHours});
  });
  optEveryNMinute.On(Event::kClick, [this] { RepairNonNumeric("optEveryNMinute_Click", {&txtHours}); });
  optEveryNHour.On(Event::kClick, [this] { RepairNonNumeric("optEveryNHour_Click", {&txtMinutes}); });
  dtpTime.On(Event::kChange, [this] { EditChooses("dtpTime_Change", optSpecificTime); });
  txtMinutes.On(Event::kChange, [this] { EditChooses("txtMinutes_Change", optEveryNMinute); });
  txtHours.On(Event::kChange, [this] { EditChooses("txtHours_Change", optEveryNHour); });
}

void RecurrenceTime::IWizardPage_GetNextPage(std::string& next) {
  next = page_identifier::kRecurrencePattern;
}

// Both fields show the same interval, whichever unit applies.
Outcome RecurrenceTime::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    TakeTask(run);
    if (run.If([&] { return Task->Recurrence() == nullptr; })) {
      run([&] { Task->SetRecurrence(Services().Factory()->NewRecurrence()); });
    }
    const Raised guard(updating);
    const auto kind = run.Read([&] { return Task->Recurrence()->TimeKind(); });
    if (kind == time_kind::kAtTime) Choose(run, optSpecificTime);
    if (kind == time_kind::kEveryNMinutes) Choose(run, optEveryNMinute);
    if (kind == time_kind::kEveryNHours) Choose(run, optEveryNHour);
    Load(run, dtpTime, [&] { dtpTime.SetValue(Task->Recurrence()->ExecutionTime()); });
    for (TextBox* box : {&txtMinutes, &txtHours}) {
      Load(run, *box, [&] {
        const std::int32_t interval = Task->Recurrence()->Interval();
        box->SetText(interval == 0 ? "1" : std::to_string(interval));
      });
    }
  });
}

std::optional<bool> RecurrenceTime::ValidateMinutes() {
  return ValidateNumber("ValidateMinutes", txtMinutes);
}

std::optional<bool> RecurrenceTime::ValidateHours() {
  return ValidateNumber("ValidateHours", txtHours);
}

bool RecurrenceTime::Validate() {
  return Answer("Validate", [&](Statements& run) {
    if (optEveryNMinute.Selected())
      return Accepts(run, txtMinutes, kMinutesNotNumericText, kMinutesNotPositiveText);
    if (optEveryNHour.Selected()) return Accepts(run, txtHours, kHoursNotNumericText, kHoursNotPositiveText);
    return true;
  });
}

Outcome RecurrenceTime::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    Repair(run, ValidateMinutes(), txtMinutes);
    Repair(run, ValidateHours(), txtHours);
    const auto recurrence = run.Get([&] { return Task->Recurrence(); });
    if (optSpecificTime.Selected()) {
      run([&] { recurrence->SetTimeKind(time_kind::kAtTime); });
    } else if (optEveryNMinute.Selected()) {
      run([&] { recurrence->SetTimeKind(time_kind::kEveryNMinutes); });
      Save(run, txtMinutes, [&] { recurrence->SetInterval(Integer(txtMinutes)); });
    } else if (optEveryNHour.Selected()) {
      run([&] { recurrence->SetTimeKind(time_kind::kEveryNHours); });
      Save(run, txtHours, [&] { recurrence->SetInterval(Integer(txtHours)); });
    }
    Save(run, dtpTime, [&] { recurrence->SetExecutionTime(dtpTime.Value()); });
  });
}

std::optional<bool> RecurrenceTime::CanContinue() {
  if (optSpecificTime.Selected()) return true;
  if (optEveryNMinute.Selected()) return !Trimmed(txtMinutes.Text()).empty();
  if (optEveryNHour.Selected()) return !Trimmed(txtHours.Text()).empty();
  return std::nullopt;
}

}  // namespace plovix
