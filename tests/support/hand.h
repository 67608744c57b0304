// A user's hand on the controls of a page. There are two kinds: one that calls the user's verbs, here, and
// one that moves the mouse and presses keys (qt_hand.h). Used by the contract of the surfaces and by the
// walker.
#pragma once

#include <plovix/controls/user.h>

#include <array>
#include <string>

namespace plovix::testing_support {

enum class Verb { kType, kClick, kDoubleClick, kDropDown, kPick, kSet, kEnter, kLeave };
inline constexpr std::array kVerbs{"type", "click", "double click", "drop down",
                                   "pick", "set",   "enter",        "leave"};

struct Act {
  Verb verb;
  std::string text = {};  // typed in place of the former text
  int index = 0;          // of the entry to pick from the opened list, modulo its length
  DateTime value = {};    // a picker uses the part that it shows
};

// Whether the control has this verb. A label takes the focus only as a link; only the focused control can be
// left.
inline bool Fits(Verb verb, const Control& control) {
  const Kind kind = control.GetKind();
  const auto* label = dynamic_cast<const Label*>(&control);
  switch (verb) {
    case Verb::kType:
      return kind == Kind::kTextBox ||
             (kind == Kind::kComboBox && dynamic_cast<const ComboBox&>(control).Editable());
    case Verb::kClick:
      return label || kind == Kind::kCheckBox || kind == Kind::kOptionButton || kind == Kind::kCommandButton;
    case Verb::kDoubleClick:
      return label || kind == Kind::kOptionButton;
    case Verb::kDropDown:
    case Verb::kPick:
      return kind == Kind::kComboBox;
    case Verb::kSet:
      return kind == Kind::kDateTimePicker;
    case Verb::kEnter:
      return label ? label->Link() : kind != Kind::kFrame && kind != Kind::kHostSlot;
    case Verb::kLeave:
      return control.HasFocus();
  }
  return false;
}

// The part of a time that the picker shows, in days or in seconds since midnight.
inline std::string PartOf(const DateTimePicker& picker, DateTime time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  return std::to_string(picker.ShowsTime() ? (time - day).count() : day.time_since_epoch().count());
}

// The value of the control as the user sees it; line ends are one character.
inline std::string ValueOf(const Control& control) {
  if (const auto* label = dynamic_cast<const Label*>(&control)) return label->Link() ? "link" : "text";
  if (const auto* check = dynamic_cast<const CheckBox*>(&control)) return std::to_string(check->Value());
  if (const auto* option = dynamic_cast<const OptionButton*>(&control)) return option->Selected() ? "1" : "0";
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control)) return combo->Text();
  if (const auto* picker = dynamic_cast<const DateTimePicker*>(&control))
    return PartOf(*picker, picker->Value());
  std::string text;
  if (const auto* box = dynamic_cast<const TextBox*>(&control)) text = box->Text();
  for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.erase(at, 1);
  return text;
}

// What the user sees of a control: its value, its entries, and whether it can be used; in a list that is not
// editable, also which entry is selected.
inline std::string Held(const Control& control) {
  std::string held = ValueOf(control) + (control.Usable() ? "" : " unusable");
  if (const auto* combo = dynamic_cast<const ComboBox*>(&control))
    held += (combo->Editable() ? " /" : " " + std::to_string(combo->Index()) + "/") +
            std::to_string(combo->Count());
  return held;
}

class Hand {
 public:
  virtual ~Hand() = default;
  // Returns whether the user could do it. If the control takes the focus, the focused control is left first.
  virtual bool Do(Control& control, const Act& act) = 0;
  // What the surface shows of a control, in the format of Held.
  virtual std::string Seen(const Control& control) = 0;
  // The control of the form that has the surface's focus; nullptr if none has.
  virtual const Control* Focused(const Form& form) = 0;
  // Lets the surface draw what it has deferred.
  virtual void Settle() {}
};

class UserHand : public Hand {
 public:
  explicit UserHand(User& user) : user_(user) {}

  bool Do(Control& control, const Act& act) override {
    const bool fits = Fits(act.verb, control);
    Control* former = control.Container().Focused();
    if (fits && control.Usable() && Fits(Verb::kEnter, control) && former != &control) {
      if (former != nullptr) user_.Leave(*former);
      user_.Enter(control);
    }
    switch (act.verb) {
      case Verb::kType:
        return user_.Type(control, act.text);
      case Verb::kClick:
        return user_.Click(control);
      case Verb::kDoubleClick:
        return (!fits || user_.Click(control)) && user_.DoubleClick(control);
      case Verb::kDropDown:
        return user_.DropDown(control);
      case Verb::kPick: {
        if (!user_.DropDown(control)) return user_.Pick(control, act.index);
        const int count = dynamic_cast<ComboBox&>(control).Count();
        return count == 0 || user_.Pick(control, act.index % count);
      }
      case Verb::kSet: {
        const auto* picker = dynamic_cast<const DateTimePicker*>(&control);
        return user_.Set(control, picker ? picker->WithShown(act.value) : act.value);
      }
      case Verb::kEnter:
        return fits && user_.Enter(control);
      case Verb::kLeave:
        return fits && user_.Leave(control);
    }
    return false;
  }
  std::string Seen(const Control& control) override { return Held(control); }
  const Control* Focused(const Form& form) override { return form.Focused(); }

 private:
  User& user_;
};

}  // namespace plovix::testing_support
