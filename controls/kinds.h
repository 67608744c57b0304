// The kinds of control. The comment on each says what raises its events; that is decided here and
// nowhere else, because toolkits differ from widget to widget.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "control.h"

namespace plovix {

// Wall-clock time of the host, without a zone.
using DateTime = std::chrono::local_seconds;

// Captioned text. A user's Click and DoubleClick raise Click and DblClick.
class Label final : public Control {
 public:
  Label(Form& form, const ControlInfo& info) : Control(form, info), link_(Has(info.style, Style::kLink)) {}
  // Shown as a link: coloured, underlined, with the hand pointer.
  [[nodiscard]] bool Link() const noexcept { return link_; }
  void SetLink(bool link);

  void Click(UserKey key);
  void DoubleClick(UserKey key);

 private:
  bool link_;
};

// A frame with a caption; raises nothing.
class Frame final : public Control {
 public:
  using Control::Control;
};

// A button; a user's Press raises Click.
class CommandButton final : public Control {
 public:
  using Control::Control;
  void Press(UserKey key);
};

// Raises Change when its text changes, whoever changed it; the same text again raises nothing.
class TextBox final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] const std::string& Text() const noexcept { return text_; }
  void SetText(std::string text);

  // Selection in characters (code points), clipped to the text.
  [[nodiscard]] int SelectionStart() const noexcept { return selection_start_; }
  [[nodiscard]] int SelectionLength() const noexcept { return selection_length_; }
  void SelectText(int start, int length);
  void SelectAll();

  void Type(UserKey key, std::string text);

 private:
  std::string text_;
  int selection_start_ = 0;
  int selection_length_ = 0;
};

// Value 0 unchecked, 1 checked. Raises Click when the value changes, whoever changed it.
class CheckBox final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] int Value() const noexcept { return value_; }
  [[nodiscard]] bool Checked() const noexcept { return value_ == 1; }
  // Fails with 380 on a value other than 0 and 1.
  void SetValue(int value);

  void Toggle(UserKey key);

 private:
  int value_ = 0;
};

// One choice of the page's group (a page has one). Raises Click when it becomes selected, whoever
// selected it; its siblings go out silently. Giving it the focus selects it.
class OptionButton final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] bool Selected() const noexcept { return selected_; }
  void Select();

  void Choose(UserKey key);
  void DoubleClick(UserKey key);

 private:
  void FocusArrived() override { Select(); }
  bool selected_ = false;
};

// A list of entries, each a text and a number of the page's own. Raises Click when the selected index
// changes and whenever the user picks, even the same entry; DropDown before a user opens the list.
class ComboBox final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] bool Editable() const noexcept { return Has(Info().style, Style::kEditable); }

  [[nodiscard]] int Count() const noexcept { return static_cast<int>(items_.size()); }
  // 0-based; both fail with 9 outside the list.
  [[nodiscard]] const std::string& ItemText(int index) const;
  [[nodiscard]] std::int32_t ItemData(int index) const;
  void AddItem(std::string text, std::int32_t data = 0);
  // Fails with 9 outside the list.
  void SetItemData(int index, std::int32_t data);
  // Empties the list and selects nothing (silently).
  void Clear();

  [[nodiscard]] int Index() const noexcept { return index_; }  // -1: nothing selected
  // Fails with 380 outside -1 .. Count()-1.
  void Select(int index);

  // What the box shows: the selected entry, or the typed text of an editable box.
  [[nodiscard]] const std::string& Text() const noexcept { return text_; }
  // On an editable box replaces the text and selects nothing; otherwise selects the entry of exactly
  // that text and fails with 383 when there is none. Raises nothing on an editable box.
  void SetText(std::string text);

  void Pick(UserKey key, int index);
  void Type(UserKey key, std::string text);
  void DropDown(UserKey key);

 private:
  struct Item {
    std::string text;
    std::int32_t data;
  };
  [[nodiscard]] const Item& At(int index) const;
  bool Show(int index);
  std::vector<Item> items_;
  int index_ = -1;
  std::string text_;
};

// A date or, with Style::kTime, a time of day. Raises Change when its value changes.
class DateTimePicker final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] DateTime Value() const noexcept { return value_; }
  void SetValue(DateTime value);

  void Set(UserKey key, DateTime value);

 private:
  DateTime value_{};
};

// A control of the host's own, standing in a HostSlot of a page.
class HostControl {
 public:
  virtual ~HostControl() = default;
  // True once the user has changed something in it.
  [[nodiscard]] virtual bool Touched() const { return false; }
};

// A place in which the host embeds a control of its own; the design's caption is the registered name of
// what belongs there. The wizard fills it before the page is initialized.
class HostSlot final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] std::string_view RegisteredName() const noexcept { return Info().caption; }
  [[nodiscard]] const std::shared_ptr<HostControl>& Embedded() const noexcept { return embedded_; }
  void Embed(std::shared_ptr<HostControl> control) { embedded_ = std::move(control); }

 private:
  std::shared_ptr<HostControl> embedded_;
};

}  // namespace plovix
