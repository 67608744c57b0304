// The page on which the user chooses the kind of pattern: daily, weekly, monthly or yearly.
#pragma once

#include <plovix/designs/recurrence_designs.h>
#include <plovix/framework/page_controls.h>

#include <array>

namespace plovix {

class RecurrencePattern final : public PageWith<kRecurrencePatternDesign> {
 public:
  RecurrencePattern();

  void IWizardPage_GetNextPage(std::string& next) override;

  // Plain properties for the references that Initialize keeps; either may be null.
  void SetWizard(Ref<WizardHost> wizard) { Wizard = std::move(wizard); }
  [[nodiscard]] const Ref<ValueStore>& GetStore() const { return Store; }
  void SetStore(Ref<ValueStore> store) { Store = std::move(store); }

 private:
  Outcome RetrieveValues() override;
  Outcome SaveValues() override;
  // The selected option's position, which is its RecurrenceType; nothing if none is selected.
  [[nodiscard]] std::optional<std::int32_t> SelectedType() const;
  // Event procedures: a help text is part of its option; a double click moves on.
  void ClickHelp(std::string_view procedure, OptionButton& option);
  void DoubleClickHelp(std::string_view procedure, OptionButton& option);
  void DoubleClickOption(std::string_view procedure);
  void MoveOn(RunAt run);

  OptionButton& optDaily = control<"optDaily">();
  Label& lblDaily = control<"lblDaily">();
  OptionButton& optWeekly = control<"optWeekly">();
  Label& lblWeekly = control<"lblWeekly">();
  OptionButton& optMonthly = control<"optMonthly">();
  Label& lblMonthly = control<"lblMonthly">();
  OptionButton& optYearly = control<"optYearly">();
  Label& lblYearly = control<"lblYearly">();
  const std::array<OptionButton*, 4> options_{&optDaily, &optWeekly, &optMonthly, &optYearly};
};

}  // namespace plovix
