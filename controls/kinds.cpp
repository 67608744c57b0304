#include "kinds.h"

#include <plovix/base/failure.h>
#include <plovix/base/utf8.h>

#include <algorithm>
#include <array>
#include <utility>

#include "form.h"

namespace plovix {
namespace {

constexpr std::array<std::string_view, std::tuple_size_v<ControlClasses>> kKindNames{
    "Label",         "TextBox", "CheckBox",       "OptionButton", "ComboBox",
    "CommandButton", "Frame",   "DateTimePicker", "HostSlot"};

}  // namespace

std::string_view KindName(Kind kind) {
  return kKindNames.at(static_cast<std::size_t>(kind));
}

void Label::SetLink(bool link) {
  if (link == link_) return;
  link_ = link;
  Notify(Aspect::kLook);
}

void Label::Click(UserKey /*key*/) {
  Raise(Event::kClick);
}

void Label::DoubleClick(UserKey /*key*/) {
  Raise(Event::kDblClick);
}

void CommandButton::Press(UserKey /*key*/) {
  Raise(Event::kClick);
}

void TextBox::SetText(std::string text) {
  if (text == text_) return;
  text_ = std::move(text);
  selection_start_ = selection_length_ = 0;
  Notify(Aspect::kText);
  Raise(Event::kChange);
}

void TextBox::SelectText(int start, int length) {
  const int size = CharacterCount(text_);
  selection_start_ = std::clamp(start, 0, size);
  selection_length_ = std::clamp(length, 0, size - selection_start_);
  Notify(Aspect::kTextSelection);
}

void TextBox::SelectAll() {
  SelectText(0, CharacterCount(text_));
}

void TextBox::Type(UserKey /*key*/, std::string text) {
  SetText(std::move(text));
}

void CheckBox::SetValue(int value) {
  if (value != 0 && value != 1)
    throw Failure(failure_number::kInvalidPropertyValue, "Invalid property value");
  if (value == value_) return;
  value_ = value;
  Notify(Aspect::kValue);
  Raise(Event::kClick);
}

void CheckBox::Toggle(UserKey /*key*/) {
  SetValue(1 - value_);
}

void OptionButton::Select() {
  if (selected_) return;
  for (OptionButton* sibling : Container().OptionButtons()) sibling->Deselect();
  selected_ = true;
  Notify(Aspect::kValue);
  Raise(Event::kClick);
}

void OptionButton::Deselect() {
  if (!selected_) return;
  selected_ = false;
  Notify(Aspect::kValue);
}

void OptionButton::Choose(UserKey key) {
  EnterFocus(key);
  Select();
}

void OptionButton::DoubleClick(UserKey /*key*/) {
  Raise(Event::kDblClick);
}

const ComboBox::Item& ComboBox::At(int index) const {
  if (index < 0 || index >= Count()) {
    throw Failure(failure_number::kSubscriptOutOfRange, "Subscript out of range");
  }
  return items_[static_cast<std::size_t>(index)];
}

const std::string& ComboBox::ItemText(int index) const {
  return At(index).text;
}

std::int32_t ComboBox::ItemData(int index) const {
  return At(index).data;
}

void ComboBox::AddItem(std::string text, std::int32_t data) {
  items_.push_back({std::move(text), data});
  untold_ = true;
  if (batches_ == 0) TellItems();
}

void ComboBox::TellItems() {
  if (std::exchange(untold_, false)) Notify(Aspect::kItems);
}

void ComboBox::SetItemData(int index, std::int32_t data) {
  (void)At(index);
  items_[static_cast<std::size_t>(index)].data = data;
}

void ComboBox::Clear() {
  items_.clear();
  index_ = -1;
  text_.clear();
  untold_ = true;  // at once: new entries could look like the old ones with some more
  TellItems();
}

// Shows the entry without raising anything; true if the index has changed.
bool ComboBox::Show(int index) {
  if (index < -1 || index >= Count()) {
    throw Failure(failure_number::kInvalidPropertyValue, "Invalid property value");
  }
  TellItems();
  const bool changed = index != index_;
  index_ = index;
  text_ = index < 0 ? std::string{} : At(index).text;
  Notify(Aspect::kIndex);
  return changed;
}

void ComboBox::Select(int index) {
  if (Show(index)) Raise(Event::kClick);
}

void ComboBox::SetText(std::string text) {
  if (!Editable()) {
    const auto found = std::ranges::find(items_, text, &Item::text);
    if (found == items_.end()) {
      throw Failure(failure_number::kReadOnlyProperty, "No entry of the list has this text: " + text);
    }
    Select(static_cast<int>(found - items_.begin()));
    return;
  }
  if (text == text_) return;
  text_ = std::move(text);
  index_ = -1;
  Notify(Aspect::kText);
}

void ComboBox::Pick(UserKey /*key*/, int index) {
  Show(index);
  Raise(Event::kClick);
}

void ComboBox::Type(UserKey /*key*/, std::string text) {
  SetText(std::move(text));
}

void ComboBox::DropDown(UserKey /*key*/) {
  Raise(Event::kDropDown);
}

DateTime DateTimePicker::WithShown(DateTime entered) const {
  const auto day = [](DateTime time) { return std::chrono::floor<std::chrono::days>(time); };
  const DateTime date = ShowsTime() ? value_ : entered;
  const DateTime time = ShowsTime() ? entered : value_;
  return day(date) + (time - day(time));
}

void DateTimePicker::SetValue(DateTime value) {
  if (value == value_) return;
  value_ = value;
  Notify(Aspect::kValue);
  Raise(Event::kChange);
}

void DateTimePicker::Set(UserKey /*key*/, DateTime value) {
  SetValue(value);
}

}  // namespace plovix
