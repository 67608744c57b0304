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
    run([&] { Task = ObjectFrom<AutoTask>(Store->GetValue(store_key::kAutoTask, {})); });
    const auto mode = run.Read([&] { return Task->ProcessingMode(); });
    if (mode == processing_mode::kOnce) run([&] { optOnce.Select(); });
    if (mode == processing_mode::kModified) run([&] { optModified.Select(); });
    if (mode == processing_mode::kEveryTime) run([&] { optEveryTime.Select(); });
    chkProcessAll.SetValue(0);
    Load(run, chkProcessAll, [&] { chkProcessAll.SetValue(Task->ProcessAllRecords() ? 1 : 0); });
    Load(run, chkFailedRecords, [&] {
      const bool failed = Task->ProcessFailedRecords();
      chkFailedRecords.SetValue(failed && !chkProcessAll.Checked() ? 1 : 0);
    });
    DateTime base = kZeroDate;
    chkUseBaseDate.SetValue(0);
    Load(run, chkUseBaseDate, [&] { base = Task->BaseDate(); });
    if (base != kZeroDate) {
      chkUseBaseDate.SetValue(1);
      dtpDate.SetValue(DatePart(base));
      dtpTime.SetValue(kZeroDate + TimePart(base));
    } else {
      run([&] { dtpDate.SetValue(Application()->Now()); });
      dtpTime.SetValue(dtpDate.Value());
    }
  });
}

// All records include the failed ones, so the second box has no meaning then.
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
      run([&] { Task->SetProcessingMode(processing_mode::kOnce); });
    } else if (optModified.Selected()) {
      run([&] { Task->SetProcessingMode(processing_mode::kModified); });
    } else if (optEveryTime.Selected()) {
      run([&] { Task->SetProcessingMode(processing_mode::kEveryTime); });
    }
    Save(run, chkProcessAll, [&] { Task->SetProcessAllRecords(chkProcessAll.Checked()); });
    if (chkFailedRecords.Enabled()) {
      Save(run, chkFailedRecords, [&] { Task->SetProcessFailedRecords(chkFailedRecords.Checked()); });
    } else {
      run([&] { Task->SetProcessFailedRecords(false); });
    }
    const DateTime base = DatePart(dtpDate.Value()) + TimePart(dtpTime.Value());
    Save(run, chkUseBaseDate, [&] { Task->SetBaseDate(chkUseBaseDate.Checked() ? base : kZeroDate); });
  });
}

}  // namespace plovix
