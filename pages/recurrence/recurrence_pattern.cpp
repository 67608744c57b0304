#include "recurrence_pattern.h"

#include <plovix/framework/page_identifiers.h>

#include <algorithm>

namespace plovix {

RecurrencePattern::RecurrencePattern() {
  lblDaily.On(Event::kClick, [this] { ClickHelp("lblDaily_Click", optDaily); });
  lblWeekly.On(Event::kClick, [this] { ClickHelp("lblWeekly_Click", optWeekly); });
  lblMonthly.On(Event::kClick, [this] { ClickHelp("lblMonthly_Click", optMonthly); });
  lblYearly.On(Event::kClick, [this] { ClickHelp("lblYearly_Click", optYearly); });
  lblDaily.On(Event::kDblClick, [this] { DoubleClickHelp("lblDaily_DblClick", optDaily); });
  lblWeekly.On(Event::kDblClick, [this] { DoubleClickHelp("lblWeekly_DblClick", optWeekly); });
  lblMonthly.On(Event::kDblClick, [this] { DoubleClickHelp("lblMonthly_DblClick", optMonthly); });
  lblYearly.On(Event::kDblClick, [this] { DoubleClickHelp("lblYearly_DblClick", optYearly); });
  optDaily.On(Event::kDblClick, [this] { DoubleClickOption("optDaily_DblClick"); });
  optWeekly.On(Event::kDblClick, [this] { DoubleClickOption("optWeekly_DblClick"); });
  optMonthly.On(Event::kDblClick, [this] { DoubleClickOption("optMonthly_DblClick"); });
  optYearly.On(Event::kDblClick, [this] { DoubleClickOption("optYearly_DblClick"); });
}

// If nothing is selected, the caller's identifier stays; if that is empty, the daily page follows.
void RecurrencePattern::IWizardPage_GetNextPage(std::string& next) {
  using namespace page_identifier;
  const std::array<const char*, 4> pages{kDailyRecurrence, kWeeklyRecurrence, kMonthlyRecurrence,
                                         kYearlyRecurrence};
  const auto type = SelectedType();
  if (type || next.empty()) next = pages.at(static_cast<std::size_t>(type.value_or(recurrence_type::kDaily)));
}

Outcome RecurrencePattern::RetrieveValues() {
  return Procedure("RetrieveValues", [&](Statements& run) {
    TakeTask(run);
    const auto type = run.Read([&] { return Task->Recurrence()->RecurrenceType(); });
    if (!type || *type < recurrence_type::kDaily || *type > recurrence_type::kYearly) return;
    Choose(run, *options_.at(static_cast<std::size_t>(*type)));
  });
}

Outcome RecurrencePattern::SaveValues() {
  return Procedure("SaveValues", [&](Statements& run) {
    const auto recurrence = run.Get([&] { return Task->Recurrence(); });
    if (const auto type = SelectedType()) run([&] { recurrence->SetRecurrenceType(*type); });
  });
}

std::optional<std::int32_t> RecurrencePattern::SelectedType() const {
  const auto selected = std::ranges::find_if(options_, &OptionButton::Selected);
  if (selected == options_.end()) return std::nullopt;
  return static_cast<std::int32_t>(selected - options_.begin());
}

void RecurrencePattern::ClickHelp(std::string_view procedure, OptionButton& option) {
  Procedure(procedure, [&](Statements& run) { Choose(run, option); });
}

void RecurrencePattern::DoubleClickHelp(std::string_view procedure, OptionButton& option) {
  Procedure(procedure, [&](Statements& run) {
    Choose(run, option);
    MoveOn(run);
  });
}

void RecurrencePattern::DoubleClickOption(std::string_view procedure) {
  Procedure(procedure, [&](Statements& run) { MoveOn(run); });
}

void RecurrencePattern::MoveOn(RunAt run) {
  const auto wizard = Wizard;  // held, because it may end the page
  if (wizard) run([&] { wizard->MoveNext(); });
}

}  // namespace plovix
