/// @file
/// What all toolkit-neutral controls have in common: identity, look, focus, events and the observer of a
/// surface. Pages use the public members; a surface goes through User (user.h).
#pragma once

#include <plovix/base/requirements.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>

/// Wizard pages for automated tasks: the pages' contract, the controls they own, the interfaces that a host
/// implements, and plain classes for hosts that need no storage of their own.
namespace plovix {

class Form;
class User;

/// The kinds of control; each has its own class in kinds.h.
enum class Kind {
  kLabel,           ///< plovix::Label
  kTextBox,         ///< plovix::TextBox
  kCheckBox,        ///< plovix::CheckBox
  kOptionButton,    ///< plovix::OptionButton
  kComboBox,        ///< plovix::ComboBox
  kCommandButton,   ///< plovix::CommandButton
  kFrame,           ///< plovix::Frame
  kDateTimePicker,  ///< plovix::DateTimePicker
  kHostSlot,        ///< plovix::HostSlot
};

/// The customary name of a kind, as scripts and messages show it: "TextBox".
[[nodiscard]] std::string_view KindName(Kind kind);

/// What a control can tell its page. The comment on each kind in kinds.h says which change raises which
/// event.
enum class Event {
  kChange,    ///< a text or a date has changed
  kClick,     ///< pressed, checked, chosen or picked
  kDblClick,  ///< the second click of a double click; the first one raised kClick
  kDropDown,  ///< a list is about to open; the page may fill it now
  kLostFocus  ///< the user went elsewhere
};
/// How many values Event has.
inline constexpr std::size_t kEventCount = 5;

/// The part of a handler's name after the control: "Change", "Click", "DblClick", "DropDown", "LostFocus".
[[nodiscard]] std::string_view EventName(Event event);

/// What has changed, as an observer is notified.
enum class Aspect {
  kCaption,        ///< Control::Caption
  kEnabled,        ///< Control::Enabled, of the control or of a frame that it stands in
  kVisible,        ///< Control::Visible, of the same
  kFocus,          ///< the page gave the control the focus; not notified when the user moves the focus
  kText,           ///< the text of a text box or an editable combo box
  kTextSelection,  ///< the selection in a text box
  kValue,          ///< a check box, an option button, a picker
  kItems,          ///< the entries of a combo box: it has more than before, or was emptied
  kIndex,          ///< the selected entry of a combo box
  kLook            ///< Label::Link
};

/// Presentation facts that belong to a design, not to a page's logic. A set of flags.
enum class Style : unsigned {
  kNone = 0,       ///< nothing special
  kHeading = 1,    ///< a label that names its page
  kMultiLine = 2,  ///< a text box in which Enter starts a new line
  kEditable = 4,   ///< a combo box in which text can be typed
  kTime = 8,       ///< a picker for a time of day; without it, for a date
  kHidden = 16,    ///< not visible until the page shows it
  kDisabled = 32,  ///< not enabled until the page enables it
  kLink = 64,      ///< a label shown as a link
};
/// The flags of both sets.
constexpr Style operator|(Style a, Style b) {
  return static_cast<Style>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
/// Whether `set` has the flag, or one of the flags.
constexpr bool Has(Style set, Style flag) {
  return (static_cast<unsigned>(set) & static_cast<unsigned>(flag)) != 0;
}

/// One row of a page design. All texts are UTF-8 and live as long as the code of the page that owns them.
struct ControlInfo {
  std::string_view name;          ///< unique on its page: "txtName"
  Kind kind;                      ///< decides the control's class
  std::string_view caption = {};  ///< in English; of a host slot: the registered name of the control
  std::string_view tag = {};      ///< "Lng=NN;" names the text that replaces the caption
  std::string_view frame = {};    ///< the frame that contains the control; empty: the page itself
  Style style = Style::kNone;     ///< set of flags
};

class Control;

/// Implemented by a surface's binding. Not owned by the control.
class ControlObserver {
 public:
  virtual ~ControlObserver() = default;
  /// Called after the state has changed. May read the control, but must not call User (no echo).
  virtual void Changed(Aspect aspect) = 0;
};

/// Gives access to the user's members; only User can create one.
class UserKey {
  friend class User;
  UserKey() = default;
};

/// Owned by its form, with the same lifetime. For the user-interface thread only, like everything here.
class Control {
 public:
  /// Created only by its form; both arguments outlive the control.
  Control(Form& form, const ControlInfo& info);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  /// @{
  /// What the design says about the control.
  [[nodiscard]] std::string_view Name() const noexcept { return info_.name; }
  [[nodiscard]] Kind GetKind() const noexcept { return info_.kind; }
  [[nodiscard]] const ControlInfo& Info() const noexcept { return info_; }
  [[nodiscard]] std::string_view Tag() const noexcept { return info_.tag; }
  /// @}
  /// The form that owns the control.
  [[nodiscard]] Form& Container() const noexcept { return form_; }

  /// @{
  /// UTF-8; the first single "&" before a letter or digit marks the mnemonic, "&&" means "&", and any other
  /// "&" is shown as it is. Set by the translator and by pages.
  [[nodiscard]] const std::string& Caption() const noexcept { return caption_; }
  void SetCaption(std::string caption);
  /// @}
  /// @{
  /// The control's own state, regardless of its frame's.
  [[nodiscard]] bool Enabled() const noexcept { return enabled_; }
  void SetEnabled(bool enabled);
  [[nodiscard]] bool Visible() const noexcept { return visible_; }
  void SetVisible(bool visible);
  /// @}

  /// True if a user can reach the control: it and the frame that contains it are enabled and visible.
  [[nodiscard]] bool Usable() const;

  /// Gives the control the focus. Does nothing if a user could not reach the control.
  void SetFocus();
  /// Whether this control has the form's focus.
  [[nodiscard]] bool HasFocus() const;

  /// One handler per event, the page's; a second call replaces the first. What it throws leaves the verb or
  /// the page's call that raised the event.
  void On(Event event, std::function<void()> handler);

  /// At most one observer; nullptr removes it.
  void Observe(ControlObserver* observer) noexcept { observer_ = observer; }

  /// @{
  /// The user moved the focus here, or took it away (raises LostFocus).
  void EnterFocus(UserKey key);
  void LeaveFocus(UserKey key);
  /// @}

 protected:
  void Raise(Event event);        ///< Runs the page's handler, if there is one.
  void Notify(Aspect aspect);     ///< Notifies the observer and counts changes of text, value and index.
  virtual void FocusArrived() {}  ///< Called when the focus has arrived, whoever moved it.

 private:
  friend class Form;
  void NotifyWithMembers(Aspect aspect);
  Form& form_;
  const ControlInfo& info_;
  std::string caption_;
  bool enabled_;
  bool visible_;
  ControlObserver* observer_ = nullptr;
  std::array<std::function<void()>, kEventCount> handlers_;
};

}  // namespace plovix
