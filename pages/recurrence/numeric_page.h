// Base of the recurrence pages with numeric fields: the rule for these fields, and how editing a line chooses
// it. Statements of a helper count as statements of the procedure that calls it.
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

  // The field's text as a number in the host's notation; nothing if it is not numeric.
  [[nodiscard]] static std::optional<NumericText> Number(const TextBox& box);
  // Whether the text is numeric, greater than 0 and not greater than `limit`, if there is one.
  [[nodiscard]] static bool IsInRange(const TextBox& box, std::int32_t limit);
  // The number rounded, halves to the even integer. Fails with 6 if it is out of range and with 13 if it is
  // not numeric.
  [[nodiscard]] static std::int32_t Integer(const TextBox& box);

  // The silent test of a field, as the page's procedure of that name; nothing if the procedure was left.
  std::optional<bool> ValidateNumber(std::string_view procedure, const TextBox& box,
                                     std::int32_t limit = kNoLimit);
  // What Validate says about a field: one text if it is not numeric, another if it is out of range. Returns
  // false if it showed one; the focus is then in the field with its text selected.
  static bool Accepts(RunAt run, TextBox& box, int not_numeric_text, int out_of_range_text,
                      std::int32_t limit = kNoLimit);
  static void Refuse(RunAt run, TextBox& box, int text);
  // Gives the field the focus and selects its text.
  static void SendTo(RunAt run, TextBox& box);
  // What saving does with a field that failed its silent test: writes "1" into it. Leaves the procedure if
  // the test was left, so that no value that may be good is replaced.
  void Repair(RunAt run, std::optional<bool> valid, TextBox& box);
  // Writes "1" with the guard raised.
  void SetToOne(RunAt run, TextBox& box);

  // The event procedure of editing a value: chooses its line, except under the guard, and refreshes.
  void EditChooses(std::string_view procedure, OptionButton& option);
  // The event procedure of choosing a line, for the fields of the other lines: as the named procedure, writes
  // "1" into the fields that are not numeric. Does nothing under the guard.
  Outcome RepairNonNumeric(std::string_view procedure, std::initializer_list<TextBox*> boxes);

  // The loading guard: raised while the page itself changes its controls.
  bool updating = false;
};

}  // namespace plovix
