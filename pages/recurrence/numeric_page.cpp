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

bool NumericPage::Accepts(RunAt run, TextBox& box, int not_numeric_text, int out_of_range_text,
                          std::int32_t limit) {
  if (run.If([&] { return !Number(box); })) {
    Refuse(run, box, not_numeric_text);
    return false;
  }
  if (run.If([&] { return !IsInRange(box, limit); })) {
    Refuse(run, box, out_of_range_text);
    return false;
  }
  return true;
}

void NumericPage::Refuse(RunAt run, TextBox& box, int text) {
  run([&] { MsgBox(text, message_box::kOkInformation); });
  SendTo(run, box);
}

void NumericPage::SendTo(RunAt run, TextBox& box) {
  run([&] { box.SetFocus(); });
  run([&] { box.SelectAll(); });
}

void NumericPage::Repair(RunAt run, std::optional<bool> valid, TextBox& box) {
  if (!valid) Statements::Leave();
  if (!*valid) SetToOne(run, box);
}

void NumericPage::SetToOne(RunAt run, TextBox& box) {
  const Raised guard(updating);
  const bool unread = IsUnread(box);
  run([&] { box.SetText("1"); });
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
