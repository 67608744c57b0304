// Base of the recurrence pages that have numeric fields: the rule for these fields, and how editing a line
// chooses it. Statements that a helper makes count as statements of the procedure that calls it.
#pragma once

#include <plovix/framework/numeric_text.h>
#include <plovix/framework/page_base.h>

#include <initializer_list>
#include <limits>

namespace plovix {

class NumericPage : public CommonPage {
 public:
  using CommonPage::CommonPage;

 protected:
  static constexpr std::int32_t kNoLimit = std::numeric_limits<std::int32_t>::max();

  // The field's text as a number in the host's notation; nothing when it is not numeric.
  [[nodiscard]] static std::optional<NumericText> Number(const TextBox& box);
  // Numeric, greater than 0 and, unless there is no limit, not greater than it.
  [[nodiscard]] static bool IsInRange(const TextBox& box, std::int32_t limit);
  // Rounded, halves to the even integer. Fails with 6 out of range and with 13 when not numeric.
  [[nodiscard]] static std::int32_t Integer(const TextBox& box);

  // The silent test of a field, as the page's procedure of that name; nothing when it was left.
  std::optional<bool> ValidateNumber(std::string_view procedure, const TextBox& box,
                                     std::int32_t limit = kNoLimit);
  // What Validate says of a field: one text when it is not numeric, another when it is out of range. False
  // when it said something; the user is then in the field with its text selected.
  static bool Accepts(RunAt run, TextBox& box, int not_numeric_text, int out_of_range_text,
                      std::int32_t limit = kNoLimit);
  static void Refuse(RunAt run, TextBox& box, int text);
  // Gives the field the focus and selects its text.
  static void SendTo(RunAt run, TextBox& box);
  // What saving does with a field that failed its silent test: writes "1" into it. Leaves the procedure
  // when the test was left, so that nothing is replaced that may be good.
  void Repair(RunAt run, std::optional<bool> valid, TextBox& box);
  // Writes "1" with the guard raised.
  void SetToOne(RunAt run, TextBox& box);

  // The event procedure of editing a value: chooses its line, which under the guard does not happen, and
  // refreshes.
  void EditChooses(std::string_view procedure, OptionButton& option);
  // As the named procedure, nothing under the guard: writes "1" into those fields that are not numeric. The
  // event procedure of choosing a line, for the fields of the others.
  Outcome RepairNonNumeric(std::string_view procedure, std::initializer_list<TextBox*> boxes);

  // The loading guard: raised while the page itself writes into its controls.
  bool updating = false;
};

}  // namespace plovix
