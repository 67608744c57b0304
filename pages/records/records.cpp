#include "records.h"

#include <plovix/framework/page_identifiers.h>

namespace plovix {
namespace {

using std::chrono::days;
using std::chrono::seconds;

DateTime DatePart(DateTime value) {
  return std::chrono::floor<days>(value);
}

seconds TimePart(DateTime value) {
  return value - DatePart(value);
}

}  // namespace

Records::Records() {
  chkProcessAll.On(Event::kClick, [this] { chkProcessAll_Click(); });
  chkUseBaseDate.On(Event::kClick, [this] { chkUseBaseDate_Click(); });
}

void Records::IWizardPage_GetNextPage(std::string& next) {
  next = page_identifier::kRecurrenceTime;
}

Outcome Records::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    run([&] { Task = ObjectFrom<AutoTask>(Set(Store)->GetValue(store_key::kAutoTask, {})); });
    std::optional<std::int32_t> mode;
    run([&] { mode = Set(Task)->ProcessingMode(); });
    if (mode == processing_mode::kOnce) run([&] { optOnce.Select(); });
    if (mode == processing_mode::kModified) run([&] { optModified.Select(); });
    if (mode == processing_mode::kEveryTime) run([&] { optEveryTime.Select(); });
    if (run.If([&] { return Set(Task)->ProcessAllRecords(); })) {
      run([&] { chkProcessAll.SetValue(1); });
    } else {
      run([&] { chkProcessAll.SetValue(0); });
      run([&] { chkFailedRecords.SetValue(Set(Task)->ProcessFailedRecords() ? 1 : 0); });
    }
    if (run.If([&] { return Set(Task)->BaseDate() != kZeroDate; })) {
      run([&] { chkUseBaseDate.SetValue(1); });
      run([&] { dtpDate.SetValue(DatePart(Set(Task)->BaseDate())); });
      run([&] { dtpTime.SetValue(kZeroDate + TimePart(Set(Task)->BaseDate())); });
    } else {
      run([&] { chkUseBaseDate.SetValue(0); });
      run([&] { dtpDate.SetValue(Application()->Now()); });
      run([&] { dtpTime.SetValue(dtpDate.Value()); });
    }
  });
}

// All records include the failed ones, so the second box has nothing to say then.
void Records::chkProcessAll_Click() {
  Procedure("chkProcessAll_Click",
            [&](Statements& run) { run([&] { chkFailedRecords.SetEnabled(!chkProcessAll.Checked()); }); });
}

void Records::chkUseBaseDate_Click() {
  Procedure("chkUseBaseDate_Click", [&](Statements& run) {
    run([&] { dtpDate.SetEnabled(chkUseBaseDate.Checked()); });
    run([&] { dtpTime.SetEnabled(dtpDate.Enabled()); });
  });
}

Outcome Records::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    if (optOnce.Selected()) {
      run([&] { Set(Task)->SetProcessingMode(processing_mode::kOnce); });
    } else if (optModified.Selected()) {
      run([&] { Set(Task)->SetProcessingMode(processing_mode::kModified); });
    } else if (optEveryTime.Selected()) {
      run([&] { Set(Task)->SetProcessingMode(processing_mode::kEveryTime); });
    }
    run([&] { Set(Task)->SetProcessAllRecords(chkProcessAll.Checked()); });
    const bool failed = chkFailedRecords.Enabled() && chkFailedRecords.Checked();
    run([&] { Set(Task)->SetProcessFailedRecords(failed); });
    const DateTime base = DatePart(dtpDate.Value()) + TimePart(dtpTime.Value());
    run([&] { Set(Task)->SetBaseDate(chkUseBaseDate.Checked() ? base : kZeroDate); });
  });
}

}  // namespace plovix
