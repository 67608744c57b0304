/// @file
/// The kinds of control. The comment on each says what raises its events. This is decided only here, because
/// toolkits differ from widget to widget. Members that take a UserKey are for the user; User calls them.
#pragma once

#include <plovix/base/date_time.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <tuple>
#include <type_traits>
#include <vector>

#include "control.h"

namespace plovix {

/// Captioned text. A user's Click and DoubleClick raise Click and DblClick.
class Label final : public Control {
 public:
  /// As for Control; a design may say that the label is a link.
  Label(Form& form, const ControlInfo& info) : Control(form, info), link_(Has(info.style, Style::kLink)) {}
  [[nodiscard]] bool Link() const noexcept { return link_; }  ///< coloured, underlined, with the hand pointer
  void SetLink(bool link);                                    ///< Click is raised either way.

  void Click(UserKey key);        ///< Raises Click.
  void DoubleClick(UserKey key);  ///< Raises DblClick.

 private:
  bool link_;
};

/// A frame with a caption; raises nothing.
class Frame final : public Control {
 public:
  using Control::Control;
};

/// A button; a user's Press raises Click.
class CommandButton final : public Control {
 public:
  using Control::Control;
  void Press(UserKey key);  ///< Raises Click.
};

/// Raises Change when its text changes, whoever changes it; setting the same text again raises nothing.
class TextBox final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] const std::string& Text() const noexcept { return text_; }  ///< UTF-8, never checked
  void SetText(std::string text);  ///< A different text clears the selection.

  /// @{
  /// Selection in characters (code points), clipped to the text. Raises nothing.
  [[nodiscard]] int SelectionStart() const noexcept { return selection_start_; }
  [[nodiscard]] int SelectionLength() const noexcept { return selection_length_; }
  void SelectText(int start, int length);
  void SelectAll();
  /// @}

  void Type(UserKey key, std::string text);  ///< The whole new text.

 private:
  std::string text_;
  int selection_start_ = 0;
  int selection_length_ = 0;
};

/// Value 0 unchecked, 1 checked. Raises Click when the value changes, whoever changes it.
class CheckBox final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] int Value() const noexcept { return value_; }          ///< 0 or 1
  [[nodiscard]] bool Checked() const noexcept { return value_ == 1; }  ///< the value as a Boolean
  void SetValue(int value);                                            ///< Fails with 380 unless 0 or 1.

  void Toggle(UserKey key);  ///< From 0 to 1 or from 1 to 0.

 private:
  int value_ = 0;
};

/// One choice of the page's group (a page has one). Raises Click when it becomes selected, whoever selects
/// it; the others are deselected silently. Giving it the focus selects it.
class OptionButton final : public Control {
 public:
  using Control::Control;
  [[nodiscard]] bool Selected() const noexcept { return selected_; }  ///< at most one on a page
  void Select();                                                      ///< Without the focus.
  void Deselect();  ///< Silently; then none of the page's options is selected.

  void Choose(UserKey key);       ///< Focus and selection.
  void DoubleClick(UserKey key);  ///< Raises DblClick.

 private:
  void FocusArrived() override { Select(); }
  bool selected_ = false;
};

/// A list of entries, each a text and a number for the page's use. Raises Click when the selected index
/// changes and whenever the user picks an entry, even the same one; DropDown before a user opens the list.
class ComboBox final : public Control {
 public:
  using Control::Control;
  /// Whether the design allows typing text.
  [[nodiscard]] bool Editable() const noexcept { return Has(Info().style, Style::kEditable); }

  /// The number of entries; 100,000 and more are possible.
  [[nodiscard]] int Count() const noexcept { return static_cast<int>(items_.size()); }
  /// @{
  /// The text or number of the entry at a 0-based index; fails with 9 outside the list.
  [[nodiscard]] const std::string& ItemText(int index) const;
  [[nodiscard]] std::int32_t ItemData(int index) const;
  /// @}
  /// Appends an entry; selects and raises nothing. Whoever adds many makes an EntryBatch first.
  void AddItem(std::string text, std::int32_t data = 0);
  /// Fails with 9 outside the list.
  void SetItemData(int index, std::int32_t data);
  /// Empties the list and selects nothing (silently).
  void Clear();

  [[nodiscard]] int Index() const noexcept { return index_; }  ///< 0-based; -1: nothing selected
  void Select(int index);                                      ///< Fails with 380 outside -1 .. Count()-1.

  /// What the box shows: the selected entry, or the text typed into an editable box.
  [[nodiscard]] const std::string& Text() const noexcept { return text_; }
  /// In an editable box, replaces the text, selects nothing and raises nothing; otherwise selects the entry
  /// with exactly that text, and fails with 383 if there is none.
  void SetText(std::string text);

  void Pick(UserKey key, int index);         ///< An entry of the opened list; `index` is in the list.
  void Type(UserKey key, std::string text);  ///< The whole text; editable boxes only.
  void DropDown(UserKey key);                ///< Raises DropDown; the page may fill the list now.

 private:
  struct Item {
    std::string text;
    std::int32_t data;
  };
  [[nodiscard]] const Item& At(int index) const;
  bool Show(int index);
  void TellItems();

  friend class EntryBatch;
  int batches_ = 0;      // that are open
  bool untold_ = false;  // entries were added of which the observer has not been told
  std::vector<Item> items_;
  int index_ = -1;
  std::string text_;
};

/// Entries that are added while it lives are told to the observer together, when it ends or one of them is
/// selected.
class EntryBatch {
 public:
  /// `list` outlives the batch; batches on one list may nest.
  explicit EntryBatch(ComboBox& list) : list_(list) { ++list_.batches_; }
  ~EntryBatch() {
    if (--list_.batches_ == 0) list_.TellItems();
  }
  EntryBatch(const EntryBatch&) = delete;
  EntryBatch& operator=(const EntryBatch&) = delete;

 private:
  ComboBox& list_;
};

/// A date or, with Style::kTime, a time of day. Raises Change when its value changes.
class DateTimePicker final : public Control {
 public:
  using Control::Control;
  /// Whether it shows the time of day, as the design says.
  [[nodiscard]] bool ShowsTime() const noexcept { return Has(Info().style, Style::kTime); }
  /// Date and time together; a surface shows one half and keeps the other.
  [[nodiscard]] DateTime Value() const noexcept { return value_; }
  /// The value with the shown part of another moment: what a user makes of it who enters that part.
  [[nodiscard]] DateTime WithShown(DateTime entered) const;
  void SetValue(DateTime value);          ///< The same value again raises nothing.
  void Set(UserKey key, DateTime value);  ///< Date and time together.

 private:
  DateTime value_{};
};

/// A host's own control, embedded in a HostSlot of a page.
class HostControl {
 public:
  virtual ~HostControl() = default;
  /// True once the user has changed something in it.
  [[nodiscard]] virtual bool Touched() const { return false; }
};

/// A place in which the host embeds its own control; the design's caption is the registered name of that
/// control. The wizard fills it before the page is initialized.
class HostSlot final : public Control {
 public:
  using Control::Control;
  /// "VeloDesignerCtrl.VeloActionList" on the Actions page, the only slot there is.
  [[nodiscard]] std::string_view RegisteredName() const noexcept { return Info().caption; }
  /// The control that the host put here, shared with it; may be null.
  [[nodiscard]] const std::shared_ptr<HostControl>& Embedded() const noexcept { return embedded_; }
  /// Not to be called once the page is initialized.
  void Embed(std::shared_ptr<HostControl> control) { embedded_ = std::move(control); }

 private:
  std::shared_ptr<HostControl> embedded_;
};

/// The class of each kind, in the order of Kind. What is made or done by kind follows from this list.
using ControlClasses = std::tuple<Label, TextBox, CheckBox, OptionButton, ComboBox, CommandButton, Frame,
                                  DateTimePicker, HostSlot>;
/// The class of one kind.
template <Kind kKind>
using ControlOf = std::tuple_element_t<static_cast<std::size_t>(kKind), ControlClasses>;

/// Calls `visit` with the control as the class of its kind.
template <class AnyControl, class Visit>
void VisitKind(AnyControl& control, Visit visit) {
  [&]<class... Classes>(std::type_identity<std::tuple<Classes...>> /*classes*/) {
    const auto as = [&visit](auto* typed) {
      if (typed != nullptr) visit(*typed);
    };
    (as(dynamic_cast<std::conditional_t<std::is_const_v<AnyControl>, const Classes, Classes>*>(&control)),
     ...);
  }(std::type_identity<ControlClasses>{});
}

}  // namespace plovix
