#include "numeric_page.h"

#include <plovix/base/raised.h>

namespace plovix {

std::optional<NumericText> NumericPage::Number(const TextBox& box) {
  return NumericText::Parse(box.Text(), Application()->DecimalSeparator());
}

bool NumericPage::IsInRange(const TextBox& box, std::int32_t limit) {
  const auto number = Number(box);
  return number && number->IsGreaterThan(0) && (limit == kNoLimit || !number->IsGreaterThan(limit));
}

std::int32_t NumericPage::Integer(const TextBox& box) {
  const auto number = Number(box);
  if (!number) throw Failure(failure_number::kTypeMismatch, "Type mismatch");
  return number->ToInt32();
}

std::optional<bool> NumericPage::ValidateNumber(std::string_view procedure, const TextBox& box,
                                                std::int32_t limit) {
  std::optional<bool> answer;
  Procedure(procedure, [&](Statements& run) {
    const bool fails = run.If([&] { return !IsInRange(box, limit); });
    answer = !fails;
  });
  return answer;
}

bool NumericPage::Accepts(Statements& run, TextBox& box, int not_numeric_text, int out_of_range_text,
                          std::int32_t limit, std::source_location where) {
  if (run.If([&] { return !Number(box); }, where)) {
    Refuse(run, box, not_numeric_text, where);
    return false;
  }
  if (run.If([&] { return !IsInRange(box, limit); }, where)) {
    Refuse(run, box, out_of_range_text, where);
    return false;
  }
  return true;
}

void NumericPage::Refuse(Statements& run, TextBox& box, int text, std::source_location where) {
  run([&] { MsgBox(text, message_box::kOkInformation); }, where);
  SendTo(run, box, where);
}

void NumericPage::SendTo(Statements& run, TextBox& box, std::source_location where) {
  run([&] { box.SetFocus(); }, where);
  run([&] { box.SelectAll(); }, where);
}

void NumericPage::Repair(Statements& run, std::optional<bool> valid, TextBox& box,
                         std::source_location where) {
  if (!valid) Statements::Leave();
  if (!*valid) SetToOne(run, box, where);
}

void NumericPage::SetToOne(Statements& run, TextBox& box, std::source_location where) {
  const Raised guard(updating);
  const bool unread = IsUnread(box);
  run([&] { box.SetText("1"); }, where);
  if (unread) MarkUnread(box);  // the user has not entered a value
}

void NumericPage::EditChooses(std::string_view procedure, OptionButton& option) {
  Procedure(procedure, [&](Statements& run) {
    if (!updating) run([&] { option.Select(); });
    RefreshWizard();
  });
}

Outcome NumericPage::RepairNonNumeric(std::string_view procedure, std::initializer_list<TextBox*> boxes) {
  return Procedure(procedure, [&](Statements& run) {
    if (updating) return;
    for (TextBox* box : boxes) {
      if (run.If([&] { return !Number(*box); })) SetToOne(run, *box);
    }
  });
}

}  // namespace plovix
