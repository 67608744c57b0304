// What every toolkit-neutral control has in common: identity, look, focus, events and the observer a
// surface hangs on. Pages use the public members; a surface enters through User (user.h).
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace plovix {

class Form;
class User;

enum class Kind {
  kLabel,
  kTextBox,
  kCheckBox,
  kOptionButton,
  kComboBox,
  kCommandButton,
  kFrame,
  kDateTimePicker,
  kHostSlot,
};

// The field's name of a kind, as scripts and messages show it: "TextBox".
[[nodiscard]] std::string_view KindName(Kind kind);

// What a control can tell its page.
enum class Event { kChange, kClick, kDblClick, kDropDown, kLostFocus };
inline constexpr std::size_t kEventCount = 5;

// The part of a handler's name behind the control: "Change", "Click", "DblClick", "DropDown", "LostFocus".
[[nodiscard]] std::string_view EventName(Event event);

// What an observer is told has changed.
enum class Aspect {
  kCaption,
  kEnabled,
  kVisible,
  kFocus,
  kText,
  kTextSelection,
  kValue,
  kItems,
  kIndex,
  kLook
};

// Presentation facts that belong to a design, not to a page's logic.
enum class Style : unsigned {
  kNone = 0,
  kHeading = 1,    // a label that names its page
  kMultiLine = 2,  // a text box in which Enter makes a new line
  kEditable = 4,   // a combo box in which text can be typed
  kTime = 8,       // a picker of a time of day; without it, of a date
  kHidden = 16,    // not visible until the page shows it
  kDisabled = 32,  // not enabled until the page enables it
  kLink = 64,      // a label shown as a link
};
constexpr Style operator|(Style a, Style b) {
  return static_cast<Style>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool Has(Style set, Style flag) {
  return (static_cast<unsigned>(set) & static_cast<unsigned>(flag)) != 0;
}

// One row of a page design. All texts are UTF-8 and live as long as the program.
struct ControlInfo {
  std::string_view name;
  Kind kind;
  std::string_view caption = {};  // for a host slot: the registered name of the control to embed
  std::string_view tag = {};      // "Lng=NN;" names the text that replaces the caption
  std::string_view frame = {};    // the frame the control stands in; empty: the page itself
  Style style = Style::kNone;
};

class Control;

// Implemented by a surface's binding. Called after the state has changed; it may read the control, and
// must not enter through the user's door again (no echo). Not owned by the control.
class ControlObserver {
 public:
  virtual ~ControlObserver() = default;
  virtual void Changed(Aspect aspect) = 0;
};

// Opens the user's door: only User can make one.
class UserKey {
  friend class User;
  UserKey() = default;
};

class Control {
 public:
  Control(Form& form, const ControlInfo& info);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  [[nodiscard]] std::string_view Name() const noexcept { return info_.name; }
  [[nodiscard]] Kind GetKind() const noexcept { return info_.kind; }
  [[nodiscard]] const ControlInfo& Info() const noexcept { return info_; }
  [[nodiscard]] std::string_view Tag() const noexcept { return info_.tag; }
  [[nodiscard]] Form& Container() const noexcept { return form_; }

  [[nodiscard]] const std::string& Caption() const noexcept { return caption_; }
  void SetCaption(std::string caption);
  [[nodiscard]] bool Enabled() const noexcept { return enabled_; }
  void SetEnabled(bool enabled);
  [[nodiscard]] bool Visible() const noexcept { return visible_; }
  void SetVisible(bool visible);

  // True when a user can reach the control: it and the frame it stands in are enabled and visible.
  [[nodiscard]] bool Usable() const;

  // Gives the control the focus. Nothing happens on a control that a user could not reach.
  void SetFocus();
  [[nodiscard]] bool HasFocus() const;

  // One handler per event, the page's; a second call replaces the first.
  void On(Event event, std::function<void()> handler);

  // At most one observer; nullptr takes it away.
  void Observe(ControlObserver* observer) noexcept { observer_ = observer; }

  // The user moved the focus here, or took it away (raises LostFocus).
  void EnterFocus(UserKey key);
  void LeaveFocus(UserKey key);

 protected:
  void Raise(Event event);
  void Notify(Aspect aspect);
  // Called when the focus has arrived, whoever sent it.
  virtual void FocusArrived() {}

 private:
  friend class Form;
  Form& form_;
  const ControlInfo& info_;
  std::string caption_;
  bool enabled_;
  bool visible_;
  ControlObserver* observer_ = nullptr;
  std::array<std::function<void()>, kEventCount> handlers_;
};

}  // namespace plovix
